// The raster writing engine on the virtual board, as the "Start Writing" run leaves it
// (writingActive 1, no stop requested).
#include "jobs/raster_writing.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "app/shell_commands.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "pattern/grouping.h"
#include "pattern_fixture.h"
#include "sim/virtual_station.h"

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

namespace {

class RasterWriting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    openWithSpeeds(1000, 1000, 1000);
    centerWritingOnly = 0;
    // As the run leaves it at its step 7.
    writingActive = 1;
    station.stopRequested = 0;
  }

  // The moves and laser voltages sent, in order.
  static std::vector<std::string> movesAndVoltages() {
    std::vector<std::string> kept;
    for (const std::string& c : sentCommands()) {
      if (c[0] == 'm' || c[0] == 'M' || c[0] == 'L' || c.rfind("G 5 ", 0) == 0) kept.push_back(c);
    }
    return kept;
  }
  void darkInMask(int left, int low, int right, int high) {
    paintPicture(maskImage, left, low, right, high, 0);
  }
};

TEST_F(RasterWriting, OneClusterIsWrittenInSerpentineRowStrokesAtTheInsideSpeedAndVoltage) {
  station.stageX = 100;
  station.stageY = 200;
  darkInMask(500, 500, 504, 502);  // 4 x 2 cells: w = 3 >= h = 1, so row strokes
  StartRasterWriting();
  // Row 500 from left to right, row 501 back; 0 V only after the pass.
  EXPECT_THAT(movesAndVoltages(), ElementsAre("m640", "M320", "G 5 117", "m659", "M320", "m659",
                                              "M321", "m640", "M321", "G 5 0"));
  // Both strokes along X at the inside speed, 700 um/s = 4480 X steps/s.
  const std::vector<std::string> sent = sentCommands();
  const auto exposure = std::find(sent.begin(), sent.end(), "G 5 117");
  EXPECT_EQ(*(exposure + 1), "s4480");
  EXPECT_EQ(station.doneCells, 8);
  EXPECT_TRUE(hasLine("box Progress: Writing: 100% done"));
  EXPECT_EQ(writingActive, 1);  // the run clears it, not the engine
}

TEST_F(RasterWriting, AOnePixelClusterIsSkipped) {
  darkInMask(600, 450, 601, 451);
  StartRasterWriting();
  EXPECT_THAT(movesAndVoltages(), ElementsAre());
  EXPECT_EQ(clusterCount, 0);  // the coarse pass found nothing: its grouping came last
}

TEST_F(RasterWriting, TheCoarseRasterIsTheBlockThresholdOutsideTheBrightCentre) {
  cellGrid.cellSize = 5;
  darkRectangle(targetPattern.cells, kPatternSide, 0, 0, 1000, 1000);
  // Block (1, 0) keeps 12 of its 25 cells bright (12 >= 25 / 2: bright), block (2, 0) 11.
  for (int k = 0; k < 12; ++k) setCell(targetPattern, 5 + k % 5, k / 5, kBrightCell);
  for (int k = 0; k < 11; ++k) setCell(targetPattern, 10 + k % 5, k / 5, kBrightCell);
  EXPECT_EQ(BuildWritingRasters(targetPattern, coarsePattern, finePattern), 200);
  const int32_t* coarse = coarsePattern.cells;  // 200 x 200, stride 200
  EXPECT_THAT(std::vector<int32_t>(coarse, coarse + 3),
              ElementsAre(kDarkCell, kBrightCell, kDarkCell));
  // The centre 80..119 is left to the fine pass.
  EXPECT_EQ(darkCells(coarsePattern), 200 * 200 - 40 * 40 - 1);
  EXPECT_EQ(coarse[80 * 200 + 80], kBrightCell);
  // The fine raster is the source inside 390..609 and bright outside.
  EXPECT_EQ(getCell(finePattern, 390, 390), kDarkCell);
  EXPECT_EQ(darkCells(finePattern), 220 * 220);
  // With block size 1 every coarse cell is bright.
  cellGrid.cellSize = 1;
  EXPECT_EQ(BuildWritingRasters(targetPattern, coarsePattern, finePattern), 1000);
  EXPECT_EQ(darkCells(coarsePattern), 0);
}

TEST_F(RasterWriting, TheDefocusGoesToTheXReadingPlusDzBeforeTheCoarsePass) {
  MoveAxisAndWait(serialLink, 0, 1200.0);
  virtualSerialClearWritten();
  station.stageX = 1200;
  station.defocusUm = 5;
  station.outsideVoltage = 2.6;
  darkInMask(100, 100, 120, 110);  // outside the centre: four coarse cells by two
  StartRasterWriting();
  const std::vector<std::string> kept = movesAndVoltages();
  const auto defocus = std::find(kept.begin(), kept.end(), "L1928");  // 1205 um
  ASSERT_NE(defocus, kept.end());
  EXPECT_NE(std::find(defocus, kept.end(), "G 5 132"), kept.end());  // 2.6 V, after it
  // The coarse strokes are 5 cells a step: X from 1200 + (20 x 5 - 500) um.
  EXPECT_NE(std::find(defocus, kept.end(), "m5120"), kept.end());  // 800 um = 5120 steps
}

TEST_F(RasterWriting, CenterWritingOnlySkipsTheDefocusAndTheCoarsePass) {
  station.defocusUm = 5;
  darkInMask(100, 100, 120, 110);
  darkInMask(500, 500, 510, 505);
  centerWritingOnly = 1;
  StartRasterWriting();
  for (const std::string& c : movesAndVoltages()) {
    EXPECT_NE(c[0], 'L') << c;
    EXPECT_NE(c, "G 5 132") << c;
  }
  EXPECT_EQ(station.doneCells, 50);
  EXPECT_EQ(getCell(finalPattern, 105, 105), kBrightCell);
}

TEST_F(RasterWriting, AStopDuringAStrokeFinishesTheMoveSetsZeroVoltsAndWritesNothingMore) {
  darkInMask(500, 500, 540, 510);  // ten row strokes of 40 cells
  // A first run on a fresh board and clock gives the time of the first exposure move.
  StartRasterWriting();
  const std::vector<BoardCommandRecord> first = virtualSerialBoard().commands;
  auto voltage = std::find_if(first.begin(), first.end(),
                              [](const BoardCommandRecord& r) { return r.text == "G 5 117"; });
  ASSERT_NE(voltage, first.end());
  auto exposureMove = std::find_if(voltage, first.end(),
                                   [](const BoardCommandRecord& r) { return r.text[0] == 'm'; });
  ASSERT_NE(exposureMove, first.end());
  const uint64_t clickAtMs = exposureMove->timeMs + 20;

  // The same run again, with the operator clicking during that move and confirming.
  TearDown();
  SetUp();
  darkInMask(500, 500, 540, 510);
  recordedScriptClick(clickAtMs, QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::Yes);
  StartRasterWriting();
  EXPECT_EQ(station.stopRequested, 1);
  EXPECT_THAT(movesAndVoltages(), ElementsAre("m0", "M0", "G 5 117", "m249", "M0", "G 5 0"));
  EXPECT_DOUBLE_EQ(boardAxisUm(virtualSerialBoard(), 0, virtualClockNow()), 249 / 6.4);
  EXPECT_EQ(station.doneCells, 40);
}

// The distance in um from (x, y) to the nearest exposed stretch of the path.
double distanceToExposure(const std::vector<ExposureSegment>& path, double x, double y) {
  double best = 1e9;
  for (const ExposureSegment& s : path) {
    const double dx = s.x1Um - s.x0Um, dy = s.y1Um - s.y0Um;
    const double length2 = dx * dx + dy * dy;
    double t = length2 > 0 ? ((x - s.x0Um) * dx + (y - s.y0Um) * dy) / length2 : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    best = std::min(best, std::hypot(s.x0Um + t * dx - x, s.y0Um + t * dy - y));
  }
  return best;
}

// The path the moves sent ask for while the laser voltage is above 0: each X move with
// the Y move after it is one straight move of MoveXY (X 6.4, Y 1.6 steps/um).
std::vector<ExposureSegment> commandedExposure(const std::vector<std::string>& sent) {
  std::vector<ExposureSegment> path;
  double x = 0, y = 0, nextX = 0;
  int pwm = 0;
  for (const std::string& c : sent) {
    if (c[0] == 'm') {
      nextX = std::stoi(c.substr(1)) / 6.4;
    } else if (c[0] == 'M') {
      const double nextY = std::stoi(c.substr(1)) / 1.6;
      if (pwm > 0) path.push_back({x, y, nextX, nextY, pwm});
      x = nextX;
      y = nextY;
    } else if (c.rfind("G 5 ", 0) == 0) {
      pwm = std::stoi(c.substr(4));
    }
  }
  return path;
}

TEST_F(RasterWriting, TheStrokesAndTheGreenPaintingCoverTheMasksDarkArea) {
  darkInMask(450, 470, 520, 530);  // in the fine centre
  darkInMask(100, 200, 150, 240);  // in the coarse outer area
  station.defocusUm = 2;
  StartRasterWriting();
  const std::vector<ExposureSegment> path = commandedExposure(sentCommands());
  ASSERT_FALSE(path.empty());
  // What the board's laser really crossed, with its ramps and the waits' timing.
  std::vector<ExposureSegment> exposed;
  for (const BoardExposure& e : virtualSerialBoard().exposure)
    exposed.push_back({e.x0Um, e.y0Um, e.x1Um, e.y1Um, e.laserPwm});
  int darkCount = 0, reachedByLaser = 0;
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; ++x) {
      if (getCell(targetPattern, x, y) != kDarkCell) continue;
      const bool centre = x >= 390 && x < 610 && y >= 390 && y < 610;
      // A coarse stroke runs along the corners of its 5 x 5 blocks.
      const double reach = centre ? 0.7 : 5.0 * std::sqrt(2.0);
      const double stageX = StageXForColumn(x, 1), stageY = StageYForRow(y, 1);
      ASSERT_LE(distanceToExposure(path, stageX, stageY), reach) << x << "," << y;
      ++darkCount;
      if (distanceToExposure(exposed, stageX, stageY) <= reach + 1.0) ++reachedByLaser;
      ASSERT_EQ(getCell(finalPattern, x, y), kDarkCell) << x << "," << y;
      Rgb colour{};
      ASSERT_TRUE(recordedDirectPixel(SurfaceWindow::Main, x + 116, 1014 - y, colour));
      ASSERT_EQ(colour.green, 255);
    }
  }
  EXPECT_GE(reachedByLaser * 100, darkCount * 98) << reachedByLaser << " of " << darkCount;
  EXPECT_EQ(darkCells(finalPattern), 70 * 60 + 50 * 40) << "nothing outside it was written";
}

TEST_F(RasterWriting, AZoomedViewWritesTheTargetResampledAtThatZoom) {
  fillGrid(zoomedPattern, kDarkCell);  // whatever an earlier view left there
  station.zoom = 0.75;
  darkInMask(480, 480, 520, 520);
  centerWritingOnly = 1;
  StartRasterWriting();
  EXPECT_EQ(station.doneCells, 30 * 30);  // 40 cells at 0.75
}

}  // namespace
