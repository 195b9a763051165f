#include "link/stage_motion.h"
#include "station/status_display.h"
#include "station_fixture.h"

namespace {

using ResponsiveWait = StationTest;

TEST_F(ResponsiveWait, ZeroWaitSleepsOneSliceAndReturnsTimeUp) {
  const int before = completedWaits;
  EXPECT_EQ(waitResponsive(0), 1);
  EXPECT_EQ(virtualClockNow(), 1'000'010u);
  EXPECT_EQ(completedWaits, before + 1);
}

TEST_F(ResponsiveWait, ATickCountBeyond32BitsEndsTheWaitAtOnce) {
  virtualClockReset(0x1'0000'0000ull + 5);
  EXPECT_EQ(waitResponsive(60'000), 1);
  EXPECT_EQ(virtualClockNow(), 0x1'0000'0000ull + 15);
}

// A confirmed stop during writing consumes the click; a declined one lets it act.
TEST_F(ResponsiveWait, TheStopQuestionDuringWritingDecidesTheClick) {
  writingActive = 1;
  recordedScriptClick(1'000'050, QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::Yes);
  EXPECT_EQ(waitResponsive(1000), 0);
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_EQ(recordedDispatchedClicks(), 0);
  EXPECT_EQ(recordedCalls().back(), "question Warning: Do you want to stop writing, now ?");
  EXPECT_LT(virtualClockNow(), 1'000'100u);

  station.stopRequested = 0;
  recordedScriptClick(virtualClockNow() + 50, QueuedTarget::DisplayWindow);
  recordedQueueAnswer(Answer::No);
  EXPECT_EQ(waitResponsive(200), 1);
  EXPECT_EQ(station.stopRequested, 0);
  EXPECT_EQ(recordedDispatchedClicks(), 1);
}

TEST_F(ResponsiveWait, ClosingTheWindowDuringAMoveWaitStopsTheOperation) {
  recordedScriptQuit(1'000'030);
  EXPECT_EQ(waitResponsive(1'000'000), 0);
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_LT(virtualClockNow(), 1'000'100u);
}

// Idle, a click on the main window acts but one on the display stops the motors;
// focusing asks the writing question first, then stops them on No.
TEST_F(ResponsiveWait, AClickOnTheDisplayStopsTheMotors) {
  recordedScriptClick(1'000'010, QueuedTarget::MainWindow);
  recordedScriptClick(1'000'020, QueuedTarget::DisplayWindow);
  EXPECT_EQ(waitResponsive(3000), 3);
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_EQ(recordedCalls().back(), "message Notice: Motor has stopped.");
  EXPECT_EQ(recordedDispatchedClicks(), 1);
  station.focusingActive = 1;
  recordedFeedbackReset();
  recordedScriptClick(virtualClockNow() + 20, QueuedTarget::DisplayWindow);
  EXPECT_EQ(waitResponsive(3000), 3);
  EXPECT_TRUE(hasLine("question Warning: Do you want to stop writing, now ?"));
  EXPECT_EQ(recordedCalls().back(), "message Notice: Motor has stopped.");
}

using StatusDisplay = StationTest;

TEST_F(StatusDisplay, NewLineOnTopPreviousBelowBothPadded) {
  const std::string pad(23, ' ');
  showStatus("Moving the stage to the writing area");
  showStatus("Done");
  EXPECT_EQ(recordedCalls().back(),
            "status: Done" + pad + "|Moving the stage to the writing area" + pad);
}

TEST_F(StatusDisplay, StagePositionIsTruncatedToWholeMicrometres) {
  serialLink.positionUm[0] = 12.9;
  serialLink.positionUm[1] = -7.6;
  serialLink.positionUm[2] = 0.4;
  showStagePosition();
  EXPECT_EQ(recordedBoxText(Box::PositionX), "12");
  EXPECT_EQ(recordedBoxText(Box::PositionY), "-7");
  EXPECT_EQ(recordedBoxText(Box::PositionZ), "0");
}

// Elapsed minutes count only while writing; a speed of 0 counts as 1.
TEST_F(StatusDisplay, TimeEstimate) {
  station.cellCount = 51088;
  cellGrid.cellSize = 2;
  station.writingSpeed = 0;
  showTimeEstimate(cellGrid.cellSize);
  EXPECT_EQ(recordedBoxText(Box::Time), "0 (214) min.");  // 51088 / 2 / 2 / 1 / 60 + 2
  station.cellCount = 1'000'000;
  station.magnification = 2;
  station.writingSpeed = 5000;  // clamped to 800 for the estimate only
  station.startTick = static_cast<int>(virtualClockNow());
  virtualClockAdvance(125'000);
  showTimeEstimate(cellGrid.cellSize);
  EXPECT_EQ(recordedBoxText(Box::Time), "0 (22) min.");
  writingActive = 1;
  showTimeEstimate(cellGrid.cellSize);
  EXPECT_EQ(recordedBoxText(Box::Time), "2 (22) min.");
  EXPECT_EQ(station.writingSpeed, 5000);
}

}  // namespace
