// The three test programs, started from the menu with the stage at (1000, 2000) um, Z 0.
#include "jobs/test_writing.h"

#include "app/command_dispatch.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "resources/resource.h"

namespace {

class TestWriting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    openWithSpeeds(1000, 1000, 1000);
    longStrokeRecordNumber = 0;
    MoveXY(1000.0, 2000.0, 1000);
    waitResponsive(1000);  // MoveXY ends on its travel time; the board settles after it
    virtualSerialClearWritten();
    virtualSerialBoard().exposure.clear();
  }

  void expectBackAtTheStartWithTheRunOver() {
    EXPECT_DOUBLE_EQ(serialLink.positionUm[0], 1000.0);
    EXPECT_DOUBLE_EQ(serialLink.positionUm[1], 2000.0);
    EXPECT_EQ(writingActive, 0);
    EXPECT_EQ(station.stopRequested, 0);
  }
};

// Both go to the laser's place and lower Z by its Z shift (30 um) plus their own DZ, then
// write five rows 800 um apart at rising voltage, and come back. The long stroke test
// writes each row as 19 strokes of 200 um at 200 um/s from 4.1 V (209 of 255); the PR test
// as 100 steps of 41 um at the skip speed / 8 (600 / 8 = 75 um/s) from 3.8 V.
TEST_F(TestWriting, TheRowProgramsWriteFiveRowsBelowTheLaserAndComeBack) {
  const std::tuple<int, const char*, const char*, double> cases[] = {
      // Z 30 - 10, 30 - 50 um
      {IDM_LONG_STROKE_TEST, "L32", "G 5 209,s6,S320,s1280,S1", 19 * 200.0},
      {IDM_PR_TEST, "L-32", "G 5 193,s480", 100 * 41.0}};
  for (const auto& [command, approachZ, firstRow, rowUm] : cases) {
    TearDown();
    SetUp();
    laser.laserShiftZ = 30;
    dispatchCommand(command);
    expectBackAtTheStartWithTheRunOver();
    EXPECT_EQ(hasLine("timer 1: killed"), command == IDM_PR_TEST) << "the PR test pauses it";
    EXPECT_EQ(sentCommands("L")[0], approachZ);
    const std::string voltagesAndSpeeds = joined(sentCommands("GsS"));
    EXPECT_EQ(voltagesAndSpeeds.find(firstRow), voltagesAndSpeeds.find("G 5 ")) << firstRow;
    EXPECT_NE(voltagesAndSpeeds.find("s5120"), std::string::npos) << "to a row at 800 um/s";
    const auto rows = exposedByPwm();
    ASSERT_EQ(rows.size(), 5u) << command;
    int row = 0;
    for (const auto& [pwm, x] : rows) {
      // The voltage goes up as the stage comes back to 1000 um, before it has quite arrived.
      EXPECT_NEAR(x.left, 1020.0, 21.0) << pwm;
      EXPECT_NEAR(x.right, 1000.0 + rowUm, 2.0) << pwm;
      EXPECT_NEAR(x.high, 2000.0 + 800.0 * row++, 1.0) << pwm;
    }
  }
}

// The black tape test leaves 4.7 V at its end. A stopped run still goes back: the long
// stroke test has written its record first, and the black tape test switches the laser off.
TEST_F(TestWriting, AStoppedRunStillGoesBackWithTheLaserOff) {
  dispatchCommand(IDM_BLACK_TAPE_TEST);
  expectBackAtTheStartWithTheRunOver();
  EXPECT_EQ(boardPwm(virtualSerialBoard(), 5), 239);
  EXPECT_EQ(exposedByPwm().size(), 1u);
  laser.laserShiftZ = 30;
  for (int command : {IDM_LONG_STROKE_TEST, IDM_LONG_STROKE_TEST, IDM_BLACK_TAPE_TEST}) {
    recordedScriptClick(virtualClockNow() + 20, QueuedTarget::MainWindow);
    recordedQueueAnswer(Answer::Yes);
    dispatchCommand(command);
    expectBackAtTheStartWithTheRunOver();
  }
  EXPECT_EQ(boardPwm(virtualSerialBoard(), 5), 0);
  EXPECT_EQ(readFile(dataPaths.runFolder / "long stroke writing condition(1).txt"),
            "laser shift:(0,0,30)\n"
            "laser voltage start: 4.10 V, step: 0.10 V, lines=5\n"
            "DZ start: -10 (um), z_step=1 (um), N=20\n"
            "X_stroke= 200 (um), Y_stroke= 800 (um)\n"
            "speed= 200 (um/s)\n");
  EXPECT_EQ(longStrokeRecordNumber, 2);
}

TEST_F(TestWriting, NoTestStartsWhileAnotherOperationRuns) {
  writingActive = 1;
  for (int command : {IDM_LONG_STROKE_TEST, IDM_PR_TEST, IDM_BLACK_TAPE_TEST})
    dispatchCommand(command);
  EXPECT_TRUE(sentCommands().empty());
  EXPECT_EQ(longStrokeRecordNumber, 0);
}

}  // namespace
