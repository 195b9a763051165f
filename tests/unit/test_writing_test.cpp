// The three test programs, started from the menu with the stage at (1000, 2000) um, Z 0.
#include "jobs/test_writing.h"

#include <map>

#include "app/command_dispatch.h"
#include "link/controller_commands.h"
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

  // X extent of the exposure at each laser channel value.
  static std::map<int, std::pair<double, double>> exposedXByPwm() {
    std::map<int, std::pair<double, double>> extent;
    for (const BoardExposure& e : virtualSerialBoard().exposure) {
      auto [it, fresh] =
          extent.try_emplace(e.laserPwm, std::min(e.x0Um, e.x1Um), std::max(e.x0Um, e.x1Um));
      it->second.first = std::min({it->second.first, e.x0Um, e.x1Um});
      it->second.second = std::max({it->second.second, e.x0Um, e.x1Um});
    }
    return extent;
  }

  void stopSoon() {
    recordedScriptClick(virtualClockNow() + 20, QueuedTarget::MainWindow);
    recordedQueueAnswer(Answer::Yes);
  }
};

TEST_F(TestWriting, LongStrokeRunsWriteConsecutiveRecordsAndRowsOfRisingVoltage) {
  laser.laserShiftZ = 30;
  dispatchCommand(IDM_LONG_STROKE_TEST);
  expectBackAtTheStartWithTheRunOver();
  // Rows at 4.1 .. 4.5 V; each 19 strokes of 200 um from its start.
  const auto extent = exposedXByPwm();
  ASSERT_EQ(extent.size(), 5u);
  EXPECT_EQ(extent.begin()->first, 209);  // 4.1 V of 5 V in 255 steps
  for (const auto& [pwm, x] : extent) EXPECT_NEAR(x.second - x.first, 19 * 200.0, 2.0) << pwm;

  stopSoon();  // the second run is stopped during its approach, after its record
  dispatchCommand(IDM_LONG_STROKE_TEST);
  expectBackAtTheStartWithTheRunOver();
  EXPECT_EQ(readFile(dataPaths.runFolder / "long stroke writing condition(0).txt"),
            "laser shift:(0,0,30)\n"
            "laser voltage start: 4.10 V, step: 0.10 V, lines=5\n"
            "DZ start: -10 (um), z_step=1 (um), N=20\n"
            "X_stroke= 200 (um), Y_stroke= 800 (um)\n"
            "speed= 200 (um/s)\n");
  EXPECT_EQ(longStrokeRecordNumber, 2);
}

TEST_F(TestWriting, EachPRRowAdvances4100UmWithTheVoltageUp) {
  dispatchCommand(IDM_PR_TEST);
  expectBackAtTheStartWithTheRunOver();
  const auto extent = exposedXByPwm();
  ASSERT_EQ(extent.size(), 5u);
  EXPECT_EQ(extent.begin()->first, 193);  // 3.8 V
  // A row's voltage goes up as the stage comes back to the row start at 1000 um, which
  // MoveXY leaves before the board has quite arrived.
  for (const auto& [pwm, x] : extent) {
    EXPECT_GE(x.first, 999.0) << pwm;
    EXPECT_LE(x.first, 1041.0) << pwm;
    EXPECT_NEAR(x.second, 1000.0 + 100 * 41.0, 1.0) << pwm;
  }
  EXPECT_TRUE(hasLine("timer 1: killed")) << "the live view is paused first";
}

TEST_F(TestWriting, TheBlackTapeTestEndsAt4Point7VoltsButAStopSwitchesTheLaserOff) {
  dispatchCommand(IDM_BLACK_TAPE_TEST);
  expectBackAtTheStartWithTheRunOver();
  EXPECT_EQ(boardPwm(virtualSerialBoard(), 5), 239);  // 4.7 V
  EXPECT_EQ(exposedXByPwm().size(), 1u);

  stopSoon();
  dispatchCommand(IDM_BLACK_TAPE_TEST);
  expectBackAtTheStartWithTheRunOver();
  EXPECT_EQ(boardPwm(virtualSerialBoard(), 5), 0);
}

TEST_F(TestWriting, NoTestStartsWhileAnotherOperationRuns) {
  writingActive = 1;
  for (int command : {IDM_LONG_STROKE_TEST, IDM_PR_TEST, IDM_BLACK_TAPE_TEST})
    dispatchCommand(command);
  EXPECT_TRUE(sentCommands().empty());
  EXPECT_EQ(longStrokeRecordNumber, 0);
}

}  // namespace
