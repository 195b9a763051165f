// Vector writing on the virtual board, entered as the "Start Writing" run enters it: the
// run has remembered the stage at (100, 200) um and set writingActive with the stop clear.
#include "jobs/vector_writing.h"

#include "link_fixture.h"
#include "sim/recorded_display.h"

namespace {

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

  // The speed command right after each raising of the line voltage, 1.3 V (66 of 255).
  static std::string writingSpeeds() {
    const std::vector<std::string> sent = sentCommands();
    std::vector<std::string> speeds;
    for (size_t i = 0; i + 1 < sent.size(); ++i)
      if (sent[i] == "G 5 66") speeds.push_back(sent[i + 1]);
    return joined(speeds);
  }

  std::filesystem::path lineFile() const { return dataPaths.runFolder / "LinePattern.txt"; }
};

// The switch is off before anything moves; the approach to (100, 200) runs along Y at the
// 1 um line speed (120 um/s) and X at half that; the lines at the 3 um speed (100 um/s).
TEST_F(VectorWriting, AClosedTriangleIsWrittenWithOneLaserOnPeriodAfterASlowApproach) {
  linePattern.segments = {{0, 0, 100, 0, 3}, {100, 0, 100, 100, 3}, {100, 100, 0, 0, 3}};
  StartVectorWriting(linePattern);
  EXPECT_EQ(joined(sentCommands("GD")), "D 6 0,G 5 66,G 5 0");
  EXPECT_EQ(joined(sentCommands("sS"), 0, 2), "s384,S192");
  EXPECT_EQ(writingSpeeds(), "s640");
  // The line's y runs against the stage's Y; MoveXY ends within 2 um along its longer axis.
  const Extent box = exposedByPwm()[66];
  EXPECT_NEAR(box.left, 100.0, 2.0);
  EXPECT_NEAR(box.right, 200.0, 2.0);
  EXPECT_NEAR(box.low, 100.0, 2.0);
  EXPECT_NEAR(box.high, 200.0, 3.0);
  EXPECT_EQ(linesAfter("status: Line ", recordedCalls()).size(), 1u) << "one chain";
  EXPECT_EQ(readFile(lineFile()).substr(0, 40), "0.000000,0.000000,100.000000,0.000000,3\n");
  EXPECT_TRUE(hasLine("line display 616,514-716,514 width 3 pen 00ff00", recordedDisplayCalls()));
}

// An unknown width class keeps the speed before it; a line starting elsewhere at the height
// the last one ended is separate; points are cut to whole um and offset by Dx, Dy and shift.
TEST_F(VectorWriting, EachLineRunsAtItsWidthsSpeedAndSeparateLinesGetZeroVoltsBetween) {
  station.offsetX = -3.0;
  station.offsetY = 10.0;
  laser.laserShiftX = 7;
  laser.laserShiftY = 5;
  linePattern.segments = {
      {0, 0, 50, 0, 6}, {80, 0, 130, 0, 2}, {0, 40, 50, 40, 10}, {0, 100.7f, -20.9f, 100.7f, 1}};
  StartVectorWriting(linePattern);
  EXPECT_EQ(writingSpeeds(), "s384,s384,s256,s768");  // 60, 60, 40, 120 um/s
  EXPECT_EQ(joined(sentCommands("GD")),
            "D 6 0,G 5 66,G 5 0,G 5 66,G 5 0,G 5 66,G 5 0,G 5 66,G 5 0");
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
  EXPECT_EQ(joined(sentCommands("GD")), "D 6 0,G 5 66,G 5 0");
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_FALSE(std::filesystem::exists(lineFile()));
}

// A stop given during the run's approach, or line drawing off, writes and saves nothing;
// an empty list writes nothing and still saves its empty file.
TEST_F(VectorWriting, WithNothingToWriteOnlyAnEmptyListIsSaved) {
  const std::tuple<int, int, size_t, const char*> cases[] = {
      {1, 1, 1, ""}, {0, 0, 1, ""}, {0, 1, 0, "D 6 0"}};  // stop, line drawing, lines
  for (const auto& [stop, active, lines, sent] : cases) {
    TearDown();
    SetUp();
    station.stopRequested = stop;
    linePattern.active = active;
    linePattern.segments.assign(lines, {0, 0, 100, 0, 3});
    StartVectorWriting(linePattern);
    EXPECT_EQ(joined(sentCommands("mMGD")), sent);
    EXPECT_EQ(writingActive, stop) << "the run clears it after a stop";
    EXPECT_EQ(std::filesystem::exists(lineFile()), lines == 0);
  }
}

}  // namespace
