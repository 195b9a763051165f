#include "app/status_display.h"
#include "station_fixture.h"

namespace {

using ResponsiveWait = StationTest;

// Only the low 32 bits of the start are kept: beyond them a wait ends at once.
TEST_F(ResponsiveWait, AnEmptyQueueIsSleptInSlicesUntilTheTimeIsUp) {
  EXPECT_EQ(waitResponsive(0), kWaitTimeUp);
  EXPECT_EQ(virtualClockNow(), 1'000'010u);
  virtualClockReset(0x1'0000'0000ull + 5);
  EXPECT_EQ(waitResponsive(60'000), kWaitTimeUp);
  EXPECT_EQ(virtualClockNow(), 0x1'0000'0000ull + 15);
}

// A confirmed stop during writing consumes the click; a declined one lets it act.
TEST_F(ResponsiveWait, TheStopQuestionDuringWritingDecidesTheClick) {
  writingActive = 1;
  recordedScriptClick(1'000'050, QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::Yes);
  EXPECT_EQ(waitResponsive(1000), kWaitStopConfirmed);
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_EQ(recordedDispatchedClicks(), 0);
  EXPECT_EQ(recordedCalls().back(), "question Warning: Do you want to stop writing, now ?");
  EXPECT_LT(virtualClockNow(), 1'000'100u);

  station.stopRequested = 0;
  recordedScriptClick(virtualClockNow() + 50, QueuedTarget::DisplayWindow);
  recordedQueueAnswer(Answer::No);
  EXPECT_EQ(waitResponsive(200), kWaitTimeUp);
  EXPECT_EQ(station.stopRequested, 0);
  EXPECT_EQ(recordedDispatchedClicks(), 1);

  recordedScriptQuit(virtualClockNow() + 30);  // the window closes
  EXPECT_EQ(waitResponsive(1'000'000), kWaitClosing);
  EXPECT_EQ(station.stopRequested, 1);
}

// Idle, a click on the main window acts but one on the display stops the motors;
// focusing asks the writing question first, then stops them on No.
TEST_F(ResponsiveWait, AClickOnTheDisplayStopsTheMotors) {
  recordedScriptClick(1'000'010, QueuedTarget::MainWindow);
  recordedScriptClick(1'000'020, QueuedTarget::DisplayWindow);
  EXPECT_EQ(waitResponsive(3000), kWaitMotorsStopped);
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_EQ(recordedCalls().back(), "message Notice: Motor has stopped.");
  EXPECT_EQ(recordedDispatchedClicks(), 1);
  station.focusingActive = 1;
  recordedFeedbackReset();
  recordedScriptClick(virtualClockNow() + 20, QueuedTarget::DisplayWindow);
  EXPECT_EQ(waitResponsive(3000), kWaitMotorsStopped);
  EXPECT_TRUE(hasLine("question Warning: Do you want to stop writing, now ?"));
  EXPECT_EQ(recordedCalls().back(), "message Notice: Motor has stopped.");
}

// The newest line on top, the one before below, both padded to cover longer ones.
TEST_F(ResponsiveWait, TheStatusLinesAndTheTimeEstimate) {
  showStatus("Moving the stage to the writing area");
  showStatus("Done");
  const std::string pad(23, ' ');
  EXPECT_EQ(recordedCalls().back(),
            "status: Done" + pad + "|Moving the stage to the writing area" + pad);
  // Elapsed minutes count only while writing (the start tick is far back); a speed of 0
  // counts as 1.
  station.cellCount = 51088;
  cellGrid.cellSize = 2;
  station.writingSpeed = 0;
  showTimeEstimate();
  EXPECT_EQ(recordedBoxText(Box::Time), "0 (214) min.");  // 51088 / 2 / 2 / 1 / 60 + 2
  station.cellCount = 1'000'000;
  station.magnification = 2;
  station.writingSpeed = 5000;  // clamped to 800 for the estimate only
  station.startTick = static_cast<int>(virtualClockNow());
  virtualClockAdvance(125'000);
  writingActive = 1;
  showTimeEstimate();
  EXPECT_EQ(recordedBoxText(Box::Time), "2 (22) min.");
  EXPECT_EQ(station.writingSpeed, 5000);
}

}  // namespace
