// Vector writing on the virtual board, entered as the "Start Writing" run enters it: the
// run has remembered the stage at (100, 200) um and set writingActive with the stop clear.
#include "link/vector_writing.h"

#include "link/controller_commands.h"
#include "link_fixture.h"
#include "sim/recorded_display.h"

namespace {

using Commands = std::vector<std::string>;

class VectorWriting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    openWithSpeeds(1000, 1000, 1000);
    station.zoom = 1.0;
    station.stageX = 100.0;
    station.stageY = 200.0;
    writingActive = 1;
    station.stopRequested = 0;
    recordedDisplayReset();
  }

  static Commands laserCommands() {
    Commands found;
    for (const std::string& c : sentCommands())
      if (c.rfind("G 5 ", 0) == 0 || c.rfind("D 6 ", 0) == 0) found.push_back(c);
    return found;
  }

  // The command sent right after the n-th (from 0) raising of the line voltage.
  static std::string afterVoltageUp(int n) {
    const Commands sent = sentCommands();
    for (size_t i = 0; i + 1 < sent.size(); ++i)
      if (sent[i] == "G 5 66" && n-- == 0) return sent[i + 1];
    return {};
  }

  std::filesystem::path lineFile() const { return dataPaths.runFolder / "LinePattern.txt"; }
};

TEST_F(VectorWriting, AClosedTriangleIsWrittenWithOneLaserOnPeriodAfterASlowApproach) {
  linePattern.segments = {{0, 0, 100, 0, 3}, {100, 0, 100, 100, 3}, {100, 100, 0, 0, 3}};
  StartVectorWriting(linePattern);

  // 1.3 V is 66 of 255; the switch is off before anything moves.
  EXPECT_EQ(laserCommands(), (Commands{"D 6 0", "G 5 66", "G 5 0"}));
  // The approach to (100, 200) from (0, 0) runs along Y at the 1 um line speed, 120 um/s,
  // and X at half that.
  Commands speeds;
  for (const std::string& c : sentCommands())
    if (c[0] == 's' || c[0] == 'S') speeds.push_back(c);
  EXPECT_EQ(Commands(speeds.begin(), speeds.begin() + 2), (Commands{"s384", "S192"}));
  EXPECT_EQ(afterVoltageUp(0), "s640") << "the first line at the 3 um speed, 100 um/s";

  // MoveXY ends within 2 um of its target along its longer axis (the other may trail a
  // little more), so the voltage changes that close to the corner.
  const auto& exposure = virtualSerialBoard().exposure;
  ASSERT_FALSE(exposure.empty());
  EXPECT_NEAR(exposure.front().x0Um, 100.0, 2.0);
  EXPECT_NEAR(exposure.back().y1Um, 200.0, 3.0);
  double highestX = 0, lowestY = 1e9;
  for (const BoardExposure& e : exposure) {
    highestX = std::max(highestX, e.x1Um);
    lowestY = std::min(lowestY, e.y1Um);
  }
  EXPECT_NEAR(highestX, 200.0, 2.0);
  EXPECT_NEAR(lowestY, 100.0, 2.0) << "the line's y runs against the stage's Y";

  EXPECT_FALSE(hasLine("status: Line 1/3 has drawn.")) << "one chain";
  EXPECT_EQ(writingActive, 0);
  EXPECT_EQ(readFile(lineFile()).substr(0, 40), "0.000000,0.000000,100.000000,0.000000,3\n");
  EXPECT_TRUE(hasLine("line display 616,514-716,514 width 3 pen 00ff00", recordedDisplayCalls()));
}

// Each width class has its speed, and one it does not know keeps the speed before it. A line
// that starts at the height where the one before ended, but elsewhere, is a separate line.
TEST_F(VectorWriting, EachLineRunsAtItsWidthsSpeedAndSeparateLinesGetZeroVoltsBetween) {
  linePattern.segments = {
      {0, 0, 50, 0, 6}, {80, 0, 130, 0, 2}, {0, 40, 50, 40, 10}, {0, 60, 50, 60, 1}};
  StartVectorWriting(linePattern);
  const Commands speeds = {"s384", "s384", "s256", "s768"};  // 60, 60, 40, 120 um/s
  for (int line = 0; line < 4; ++line) EXPECT_EQ(afterVoltageUp(line), speeds[line]) << line;
  EXPECT_EQ(laserCommands(), (Commands{"D 6 0", "G 5 66", "G 5 0", "G 5 66", "G 5 0", "G 5 66",
                                       "G 5 0", "G 5 66", "G 5 0"}));
}

TEST_F(VectorWriting, PointsAreCutToWholeMicrometresAndOffsetByTheRunAndTheLaserShift) {
  station.offsetX = -3.0;
  station.offsetY = 10.0;
  laser.laserShiftX = 7;
  laser.laserShiftY = 5;
  linePattern.segments = {{0.0f, 100.7f, -20.9f, 100.7f, 1}};
  StartVectorWriting(linePattern);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[0], 100.0 - 3.0 - 20.0 + 7.0);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[1], 200.0 + 10.0 - 100.0 + 5.0);
}

TEST_F(VectorWriting, AStopIsHonouredAtTheEndOfAChainAndSkipsTheSave) {
  linePattern.segments = {
      {0, 0, 100, 0, 3}, {100, 0, 100, 100, 3}, {100, 100, 0, 0, 3}, {0, 50, 50, 50, 3}};
  recordedScriptClick(virtualClockNow() + 50, QueuedTarget::DisplayWindow);
  recordedQueueAnswer(Answer::Yes);
  StartVectorWriting(linePattern);

  EXPECT_TRUE(hasLine("status: Line 3/4 has drawn."));
  EXPECT_EQ(laserCommands(), (Commands{"D 6 0", "G 5 66", "G 5 0"}));
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_FALSE(std::filesystem::exists(lineFile()));
}

TEST_F(VectorWriting, AStopGivenBeforeOrLineDrawingOffWritesNothing) {
  linePattern.segments = {{0, 0, 100, 0, 3}};
  station.stopRequested = 1;  // during the run's approach
  StartVectorWriting(linePattern);
  EXPECT_TRUE(sentCommands().empty());
  station.stopRequested = 0;
  linePattern.active = 0;
  StartVectorWriting(linePattern);
  EXPECT_TRUE(sentCommands().empty());
  EXPECT_EQ(writingActive, 0);
  EXPECT_FALSE(std::filesystem::exists(lineFile()));
}

TEST_F(VectorWriting, AnEmptyListWritesNothingAndStillSavesAnEmptyFile) {
  StartVectorWriting(linePattern);
  EXPECT_EQ(laserCommands(), (Commands{"D 6 0"}));
  ASSERT_TRUE(std::filesystem::exists(lineFile()));
}

}  // namespace
