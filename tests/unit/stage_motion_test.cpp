#include "link/stage_motion.h"

#include "app/command_dispatch.h"
#include "link/controller_commands.h"
#include "link/jog_pad.h"
#include "link_fixture.h"

using StageMotionTest = LinkTest;
using ::testing::ElementsAre;
using ::testing::StartsWith;

TEST_F(StageMotionTest, AZMoveArrivesWithinItsTimeOut) {
  openWithSpeeds(1000, 1000, 100);
  EXPECT_EQ(MoveTimeoutMs(serialLink, 2, 100.0), 3000);
  uint64_t start = virtualClockNow();
  MoveAxisAndWait(serialLink, 2, 100.0);
  EXPECT_LT(virtualClockNow() - start, 3000u);
  EXPECT_THAT(lastStatus(), StartsWith("Z arrived(1): "));
  EXPECT_EQ(recordedBoxText(Box::PositionZ), "100");
}

TEST_F(StageMotionTest, ASilentBoardEndsTheWaitAfterItsTimeOutOrOnAPositionReply) {
  openWithSpeeds(1000, 1000, 100);
  virtualSerialBoard().faults.silent = true;
  uint64_t start = virtualClockNow();
  EXPECT_EQ(WaitForAxis(serialLink, 2, 100.0, 3000), kWaitTimedOut);
  // Over by at most one cycle of reads and a pump.
  EXPECT_NEAR(virtualClockNow() - start, 3000u + 360u, 360u);
  EXPECT_NE(lastStatus().find("/3000, Fail to read:"), std::string::npos);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], 0.0);
  // A position reply near the target ends the wait.
  const char reply[] = "junkP1598\r\n";  // Y 998.75 um: within 1 um of 999
  virtualSerialBoard().output.assign(reply, reply + 11);
  EXPECT_EQ(WaitForAxis(serialLink, 1, 999.0, 5000), kWaitPositionReply);
  EXPECT_THAT(lastStatus(), StartsWith("Z arrived(2): "));
  EXPECT_DOUBLE_EQ(serialLink.positionUm[1], 999.0);
}

TEST_F(StageMotionTest, ALostArrivalReportEndsOnTheQueriedPosition) {
  openWithSpeeds(1000, 1000, 1000);
  VirtualBoard& board = virtualSerialBoard();
  board.faults.dropEveryNthReply = 2;
  board.repliesSent = 1;  // the next reply, the arrival report, is lost; the query's is not
  MoveAxisTo(serialLink, 2, 200.0);
  EXPECT_EQ(WaitForAxis(serialLink, 2, 200.0, MoveTimeoutMs(serialLink, 2, 200.0)),
            kWaitQueriedPosition);
  EXPECT_THAT(lastStatus(), StartsWith("Z arrived(5): "));
}

TEST_F(StageMotionTest, ALimitArrivalSetsTheUpperFlagAndBlocksTheNextUpwardMove) {
  openWithSpeeds(1000, 1000, 100);
  virtualSerialBoard().axes[1].maxMachineSteps = 1600;  // the switch at 1000 um
  MoveAxisAndWait(serialLink, 1, 2000.0);
  EXPECT_EQ(serialLink.upperLimit[1], 1.0);
  EXPECT_THAT(lastStatus(), StartsWith("Limited(10): 1000.0"));
  virtualSerialClearWritten();
  MoveAxisTo(serialLink, 1, 1500.0);
  EXPECT_TRUE(sentCommands().empty());
  MoveAxisTo(serialLink, 1, 500.0);
  EXPECT_THAT(sentCommands(), ElementsAre("M800"));
}

TEST_F(StageMotionTest, AMoveToThePresentPlaceDoesNotWait) {
  openWithSpeeds(1000, 1000, 100);
  uint64_t start = virtualClockNow();
  MoveAxisAndWait(serialLink, 2, 0.0);
  EXPECT_TRUE(virtualSerialWritten().empty());
  MoveXY(0.0, 0.0, 1000);  // its commands go out, but there is no travel to wait for
  EXPECT_EQ(virtualClockNow(), start);
}

TEST_F(StageMotionTest, MoveXYMatchesTheShorterAxisSpeedToTheTravelTime) {
  const XYMovePlan plan = PlanXYMove(30.0, 300.0, 600);
  EXPECT_EQ(plan.travelMs, 500u);
  EXPECT_EQ(plan.xSpeedUmPerS, 60);
  openWithSpeeds(1000, 1000, 100);
  MoveXY(100.0, 50.0, 1000);
  std::vector<std::string> sent = sentCommands();
  ASSERT_GE(sent.size(), 4u);
  EXPECT_THAT(std::vector<std::string>(sent.begin(), sent.begin() + 4),
              ElementsAre("s6400", "S800", "m640", "M80"));
  EXPECT_DOUBLE_EQ(serialLink.positionUm[1], 50.0);
}

TEST_F(StageMotionTest, WithoutABoardJogKeysOnlyUpdateThePositionModel) {
  virtualSerialSetPresent(false);
  OpenSerialLink(serialLink, true);
  JogByKey(0x25);  // Left
  JogByKey(0x21);  // Page Up
  JogByKey(0x24);  // Home moves nothing
  EXPECT_DOUBLE_EQ(serialLink.positionUm[0], -500.0);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], 100.0);
}

TEST_F(StageMotionTest, APressOnAPadEdgeStartsNoJog) {
  openWithSpeeds(1000, 1000, 100);
  const IntRect& r = jogPad.rects[1];  // +X
  const int midX = (r.left + r.right) / 2, midY = (r.top + r.bottom) / 2;
  for (IntPoint edge : {IntPoint{r.left, midY}, IntPoint{r.right, midY}, IntPoint{midX, r.top},
                        IntPoint{midX, r.bottom}})
    JogPadPress(jogPad, edge);
  EXPECT_TRUE(virtualSerialWritten().empty());
  EXPECT_EQ(jogPad.busy, 0);
}

TEST_F(StageMotionTest, AHeldJogPadRepeatsItsStepUntilTheButtonIsLetGo) {
  openWithSpeeds(1000, 1000, 100);
  const IntRect& r = jogPad.rects[1];  // +X
  const uint64_t releaseAt = virtualClockNow() + 3000;
  recordedScriptAction(releaseAt, [] { JogPadRelease(jogPad); });
  JogPadPress(jogPad, {(r.left + r.right) / 2, (r.top + r.bottom) / 2});
  std::vector<std::string> sent = sentCommands();
  const auto xMoves =
      std::count_if(sent.begin(), sent.end(), [](const std::string& c) { return c[0] == 'm'; });
  EXPECT_GE(xMoves, 3);
  EXPECT_GE(virtualClockNow(), releaseAt);
  EXPECT_LT(virtualClockNow(), releaseAt + 2000) << "no step starts after the release";
  EXPECT_EQ(jogPad.busy, 0);
}

TEST_F(StageMotionTest, ThePositionBoxesAreParsedAndClamped) {
  openWithSpeeds(5000, 1000, 100);
  recordedSetBoxText(Box::PositionX, "30000");
  dispatchCommand(4003);
  EXPECT_EQ(sentCommands().front(), "m160000");
  virtualSerialClearWritten();
  recordedSetBoxText(Box::PositionZ, "up");
  dispatchCommand(4005);
  EXPECT_TRUE(sentCommands().empty());
}

TEST_F(StageMotionTest, WaferTwiceLowersZOnce) {
  openWithSpeeds(1000, 1000, 1000);
  station.zLifted = 1;
  station.zLiftUm = 680.0;
  dispatchCommand(32002);
  dispatchCommand(32002);
  std::vector<std::string> sent = sentCommands();
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "L-1088"), 1);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], -680.0);
}
