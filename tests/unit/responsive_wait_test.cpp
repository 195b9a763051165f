#include "station/status_display.h"
#include "station_fixture.h"

using ResponsiveWait = StationTest;

// Only the low 32 bits of the start are kept: beyond them a wait ends at once.
TEST_F(ResponsiveWait, AnEmptyQueueIsSleptInSlicesUntilTheTimeIsUp) {
  EXPECT_EQ(waitResponsive(0), kWaitTimeUp);
  EXPECT_EQ(virtualClockNow(), 1'000'010u);
  virtualClockReset(0x1'0000'0000ull + 5);
  EXPECT_EQ(waitResponsive(60'000), kWaitTimeUp);
  EXPECT_EQ(virtualClockNow(), 0x1'0000'0000ull + 15);
}

// During writing a click asks: "Yes" consumes it, "No" lets it act. During focusing a click
// on the display asks too, and after "No" stops the motors as when nothing runs. The
// window closing ends a wait with a result of its own.
TEST_F(ResponsiveWait, TheStopQuestionDecidesTheClick) {
  writingActive = 1;
  recordedScriptClick(1'000'050, QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::Yes);
  EXPECT_EQ(waitResponsive(1000), kWaitStopConfirmed);
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_EQ(recordedCalls().back(), "question Warning: Do you want to stop writing, now ?");
  station.stopRequested = 0;
  recordedScriptClick(virtualClockNow() + 50, QueuedTarget::DisplayWindow);
  EXPECT_EQ(waitResponsive(200), kWaitTimeUp);
  EXPECT_EQ(recordedDispatchedClicks(), 1);

  writingActive = 0;
  station.focusingActive = 1;
  EXPECT_EQ(operationRunning(), 1) << "nothing else starts while focusing";
  recordedScriptClick(virtualClockNow() + 20, QueuedTarget::DisplayWindow);
  EXPECT_EQ(waitResponsive(3000), kWaitMotorsStopped);
  EXPECT_EQ(linesAfter("question Warning: ", recordedCalls()).size(), 3u);
  EXPECT_EQ(recordedCalls().back(), "message Notice: Motor has stopped.");
  recordedScriptQuit(virtualClockNow() + 30);
  EXPECT_EQ(waitResponsive(1'000'000), kWaitClosing);
}

// The newest line on top, the one before below, both padded to cover longer ones. Elapsed
// minutes count only while writing; a speed of 0 counts as 1, one above 800 as 800.
TEST_F(ResponsiveWait, TheStatusLinesAndTheTimeEstimate) {
  showStatus("Moving the stage to the writing area");
  showStatus("Done");
  const std::string pad(23, ' ');
  EXPECT_EQ(recordedCalls().back(),
            "status: Done" + pad + "|Moving the stage to the writing area" + pad);
  station.cellCount = 51088;
  cellGrid.cellSize = 2;
  station.writingSpeed = 0;
  showTimeEstimate(cellGrid.cellSize);  // the start tick is long past, but nothing is written
  EXPECT_EQ(recordedBoxText(Box::Time), "0 (214) min.");  // 51088 / 2 / 2 / 1 / 60 + 2
  station.cellCount = 1'000'000;
  station.magnification = 2;
  station.writingSpeed = 5000;
  station.startTick = static_cast<int>(virtualClockNow() - 125'000);
  writingActive = 1;
  showTimeEstimate(cellGrid.cellSize);
  EXPECT_EQ(recordedBoxText(Box::Time), "2 (22) min.");
}
