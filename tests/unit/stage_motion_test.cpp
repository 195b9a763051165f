#include "link/stage_motion.h"

#include "app/command_dispatch.h"
#include "link/controller_commands.h"
#include "link/jog_pad.h"
#include "link_fixture.h"
#include "resources/resource.h"

using ::testing::ElementsAre;
using ::testing::StartsWith;
using StageMotionTest = LinkTest;

// The arrival letter (a limit one refuses the next move that way), a queried position or a
// position reply near the target end the wait, else its time-out: 1 s + twice the travel.
TEST_F(StageMotionTest, WhatEndsTheWaitForAnAxis) {
  openWithSpeeds(1000, 1000, 1000);
  VirtualBoard& board = virtualSerialBoard();
  board.faults.dropEveryNthReply = 2;
  board.repliesSent = 1;  // the next reply, the arrival report, is lost; the query's is not
  MoveAxisAndWait(serialLink, 2, 200.0);
  EXPECT_THAT(lastStatus(), StartsWith("Z arrived(5): "));
  board.faults.dropEveryNthReply = 0;
  EXPECT_EQ(MoveTimeoutMs(serialLink, 2, 1200.0), 3000);
  MoveAxisAndWait(serialLink, 2, 1200.0);
  EXPECT_THAT(lastStatus(), StartsWith("Z arrived(1): "));
  EXPECT_EQ(recordedBoxText(Box::PositionZ), "1200");
  board.axes[1].maxMachineSteps = 1600;  // the switch at 1000 um
  MoveAxisAndWait(serialLink, 1, 2000.0);
  EXPECT_THAT(lastStatus(), StartsWith("Limited(10): 1000.0"));
  virtualSerialClearWritten();
  MoveAxisTo(serialLink, 1, 1500.0);
  MoveAxisTo(serialLink, 1, 500.0);
  EXPECT_THAT(sentCommands(), ElementsAre("M800"));

  board.faults.silent = true;
  const char reply[] = "junkP1598\r\n";  // Y 998.75 um: within 1 um of 999
  board.output.assign(reply, reply + 11);
  EXPECT_EQ(WaitForAxis(serialLink, 1, 999.0, 5000), kWaitPositionReply);
  const uint64_t start = virtualClockNow();
  EXPECT_EQ(WaitForAxis(serialLink, 2, 1300.0, 3000), kWaitTimedOut);
  EXPECT_NEAR(virtualClockNow() - start, 3000u + 360u, 360u);  // over by one cycle at most
  EXPECT_NE(lastStatus().find("/3000, Fail to read:"), std::string::npos);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], 1200.0);
}

// Both axes arrive together; nothing is waited for without travel; a click on the display
// or the window closing ends a move at once.
TEST_F(StageMotionTest, MoveXYMatchesTheAxisSpeedsAndWaitsUntilTheStageIsThere) {
  openWithSpeeds(1000, 1000, 100);
  uint64_t startMs = virtualClockNow();
  const double lineMsBefore = virtualSerialTraffic().writeMs;
  MoveAxisAndWait(serialLink, 2, 0.0);
  MoveXY(0.0, 0.0, 1000);
  EXPECT_LE(virtualClockNow() - startMs, virtualSerialTraffic().writeMs - lineMsBefore)
      << "no wait beyond the commands' bytes on the line";
  virtualSerialClearWritten();
  MoveXY(100.0, 1000.0, 500);  // two seconds along Y, X at 50 um/s
  EXPECT_THAT(sentWithoutQueries(), ElementsAre("s320", "S800", "m640", "M1600"));
  EXPECT_GE(virtualClockNow() - startMs, 1990u);
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 1, virtualClockNow()), 1000.0, 2.0);
  startMs = virtualClockNow();
  recordedScriptClick(startMs + 100, QueuedTarget::DisplayWindow);
  MoveXY(0.0, 0.0, 500);
  recordedScriptQuit(virtualClockNow() + 100);
  MoveXY(100.0, -1000.0, 500);
  EXPECT_LT(virtualClockNow() - startMs, 300u);
}

// Keys step 500 um in X and Y, 100 um in Z; a press on a pad rectangle's edge starts
// nothing, a held one steps until the button is let go. The position boxes are
// clamped to the travel; "Wafer" and "Mount" pressed twice move Z once.
TEST_F(StageMotionTest, JogKeysThePadThePositionBoxesAndMountAndWafer) {
  openWithSpeeds(5000, 1000, 1000);
  for (int key : {0x25, 0x21, 0x24}) onMainKeyDown(key);  // Left, Page Up, Home
  for (int id : {IDC_WAFER, IDC_WAFER, IDC_MOUNT, IDC_MOUNT}) dispatchCommand(id);
  recordedSetBoxText(Box::PositionZ, "up");
  dispatchCommand(IDC_MOVE_Z);
  EXPECT_THAT(sentWithoutQueries(), ElementsAre("m-3200", "L160", "L-928", "L160"));
  recordedSetBoxText(Box::PositionX, "30000");
  dispatchCommand(IDC_MOVE_X);
  EXPECT_EQ(sentWithoutQueries().back(), "m160000");
  virtualSerialClearWritten();
  const IntRect& r = jogPad.rects[0];  // -X
  const int midX = (r.left + r.right) / 2, midY = (r.top + r.bottom) / 2;
  onMainLeftButtonDown(r.left, midY);
  onMainLeftButtonDown(midX, r.bottom);
  EXPECT_TRUE(virtualSerialWritten().empty());
  const uint64_t releaseAt = virtualClockNow() + 3000;
  recordedScriptAction(releaseAt, [] { onMainLeftButtonUp(); });
  onMainLeftButtonDown(midX, midY);
  EXPECT_GE(sentWithoutQueries().size(), 3u);
  EXPECT_LT(virtualClockNow() - releaseAt, 2000u) << "no step starts after the release";
}
