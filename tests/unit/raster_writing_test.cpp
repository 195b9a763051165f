// The raster writing engine on the virtual board, entered as the "Start Writing" run does.
#include "jobs/raster_writing.h"

#include <algorithm>
#include <cmath>

#include "app/shell_commands.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "pattern_fixture.h"

namespace {

class RasterWriting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    openWithSpeeds(1000, 1000, 1000);
    centerWritingOnly = 0;
    station.outsideSpeed = 350;  // unlike the inside 700 um/s, so that the passes differ
    writingActive = 1;
    station.stopRequested = 0;
  }

  void darkInMask(int x0, int y0, int x1, int y1) { paintPicture(maskImage, x0, y0, x1, y1, 0); }
};

// Serpentine strokes along the box's longer side (rows when square) at 700 um/s and 2.3 V,
// 0 V after the pass; cells (500, 500) up to (right, high), under the stage at (100, 200) um.
TEST_F(RasterWriting, AClusterIsWrittenInSerpentineStrokesAlongTheLongerSideOfItsBox) {
  const std::tuple<int, int, const char*> cases[] = {
      {504, 502, "m640,M320,G 5 117,m659,M320,m659,M321,m640,M321,G 5 0"},
      {502, 504, "m640,M320,G 5 117,m640,M324,m646,M324,m646,M320,G 5 0"},
      {503, 503, "m640,M320,G 5 117,m652,M320,m652,M321,m640,M321,m640,M323,m652,M323,G 5 0"}};
  for (const auto& [right, high, moves] : cases) {
    TearDown();
    SetUp();
    station.stageX = 100;
    station.stageY = 200;
    darkInMask(500, 500, right, high);
    StartRasterWriting();
    EXPECT_EQ(joined(sentCommands("mMG")), moves);
    EXPECT_EQ(joined(sentCommands("sS"), 0, 2), "s4480,S1120") << "700 um/s before the pass";
    EXPECT_EQ(station.doneCells, (right - 500) * (high - 500));
    EXPECT_TRUE(hasLine("box Progress: Writing: 100% done"));
  }
}

TEST_F(RasterWriting, TheCoarseRasterIsTheBlockThresholdOutsideTheBrightCentre) {
  cellGrid.cellSize = 5;
  darkRectangle(targetPattern.cells, kPatternSide, 0, 0, 1000, 1000);
  // Block (1, 0) keeps 12 of its 25 cells bright (12 >= 25 / 2: bright), block (2, 0) 11.
  for (int k = 0; k < 12; ++k) setCell(targetPattern, 5 + k % 5, k / 5, kBrightCell);
  for (int k = 0; k < 11; ++k) setCell(targetPattern, 10 + k % 5, k / 5, kBrightCell);
  EXPECT_EQ(BuildWritingRasters(targetPattern, coarsePattern, finePattern), 200);
  const int32_t* coarse = coarsePattern.cells;  // 200 x 200, stride 200
  EXPECT_EQ(std::vector<int32_t>(coarse, coarse + 3), std::vector<int32_t>({0, 1, 0}));
  EXPECT_EQ(darkCells(coarsePattern), 200 * 200 - 40 * 40 - 1) << "the centre is left bright";
  // With block size 1 every coarse cell is bright.
  cellGrid.cellSize = 1;
  EXPECT_EQ(BuildWritingRasters(targetPattern, coarsePattern, finePattern), 1000);
  EXPECT_EQ(darkCells(coarsePattern), 0);
}

// After the fine pass Z goes to the X reading plus Dz; the coarse pass follows at the outside
// speed and voltage. A stop ends the run after the stroke, cluster or defocus under way; one
// given on the way to a stroke's start leaves that stroke dark.
TEST_F(RasterWriting, TheCoarsePassFollowsTheDefocusAndAStopEndsTheRunAtTheNextCheck) {
  auto paintAndWrite = [this] {
    MoveAxisAndWait(serialLink, 0, 1200.0);
    station.stageX = 1200;
    station.defocusUm = 5;
    darkInMask(450, 450, 490, 452);  // fine cluster A: two strokes of 40 cells
    darkInMask(500, 500, 506, 503);  // fine cluster B: 18 cells
    darkInMask(100, 100, 120, 110);  // a coarse cluster of four blocks by two
    StartRasterWriting();
  };
  paintAndWrite();
  // Z to 1205 um, X and Y at 350 um/s; the first coarse stroke at 2.6 V from 1200 + (20 x 5
  // - 500) um = 800 um to 815 um, 5 cells a step.
  const std::vector<std::string> kept = sentCommands("sSmMLG");
  const size_t defocus = std::find(kept.begin(), kept.end(), "L1928") - kept.begin();
  EXPECT_EQ(joined(kept, defocus, 12),
            "L1928,s2240,S560,s2240,S555,m5120,M-640,G 5 132,s2240,S1,m5216,M-640");
  // The times to click at, from this run: the first "G 5 0" ends A's pass, its pause follows.
  std::map<std::string, uint64_t> sentAt;
  for (const BoardCommandRecord& r : virtualSerialBoard().commands)
    sentAt.try_emplace(r.text, r.timeMs);
  const std::tuple<const char*, uint64_t, int, size_t> cases[] = {
      {"on the way to A's first stroke", sentAt["m7360"] + 15, 0, 0},
      {"during A's first stroke", sentAt["G 5 117"] + 20, 40, 0},
      {"in the pause after A", sentAt["G 5 0"] + 100, 80, 0},
      {"during the defocus move", sentAt["L1928"] + 50, 98, 1}};
  for (const auto& [when, clickAtMs, doneCells, defocusMoves] : cases) {
    TearDown();
    SetUp();
    recordedScriptClick(clickAtMs, QueuedTarget::MainWindow);
    recordedQueueAnswer(Answer::Yes);
    paintAndWrite();
    EXPECT_EQ(station.stopRequested, 1) << when;
    EXPECT_EQ(station.doneCells, doneCells) << when;
    EXPECT_EQ(sentCommands("L").size(), defocusMoves) << when;
    EXPECT_EQ(boardPwm(virtualSerialBoard(), kBoardLaserChannel), 0) << when;
    const int lastX = std::stoi(sentCommands("m").back().substr(1));
    EXPECT_EQ(boardAxisSteps(virtualSerialBoard(), 0, virtualClockNow() + 2000), lastX) << when;
  }
}

// The distance in um from (x, y) to the nearest stretch the board's laser exposed.
double distanceToExposure(double x, double y) {
  double best = 1e9;
  for (const BoardExposure& s : virtualSerialBoard().exposure) {
    const double dx = s.x1Um - s.x0Um, dy = s.y1Um - s.y0Um;
    const double length2 = dx * dx + dy * dy;
    double t = length2 > 0 ? ((x - s.x0Um) * dx + (y - s.y0Um) * dy) / length2 : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    best = std::min(best, std::hypot(s.x0Um + t * dx - x, s.y0Um + t * dy - y));
  }
  return best;
}

// A pass writes the first run of marks of each row: a U takes two passes, a comb of four teeth
// keeps its last after three; a one-cell cluster's stroke ends at offset 0 and is skipped.
TEST_F(RasterWriting, TheLaserAndTheGreenPaintingCoverTheMasksDarkAreaInUpToThreePasses) {
  darkInMask(450, 470, 520, 530);  // in the fine centre
  darkInMask(100, 200, 150, 240);  // in the coarse outer area
  darkInMask(450, 550, 480, 554);  // the U: a base of 30 x 4 cells, arms 4 wide, 16 high
  darkInMask(450, 554, 454, 570);
  darkInMask(476, 554, 480, 570);
  darkInMask(500, 550, 540, 554);  // the comb: a base of 40 x 4, teeth 4 wide every 10 cells
  for (int tooth = 0; tooth < 4; ++tooth) darkInMask(500 + 10 * tooth, 554, 504 + 10 * tooth, 570);
  darkInMask(580, 550, 581, 560);  // one-cell-wide parts, whose cells both start and end
  darkInMask(580, 555, 584, 556);  // the strokes across them: a bar on a column,
  darkInMask(550, 590, 560, 591);  // and a stem on a row
  darkInMask(555, 587, 556, 590);
  darkInMask(600, 450, 601, 451);
  station.defocusUm = 2;
  StartRasterWriting();
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; ++x) {
      if (getCell(targetPattern, x, y) != kDarkCell) continue;
      const bool leftOut = (x >= 530 && x < 534 && y >= 554) || (x == 600 && y == 450);
      ASSERT_EQ(getCell(finalPattern, x, y), leftOut ? kBrightCell : kDarkCell) << x << "," << y;
      if (leftOut) continue;
      const bool centre = x >= 390 && x < 610 && y >= 390 && y < 610;
      // Y moves in steps of 0.625 um; a coarse stroke runs along the corners of its blocks.
      const double reach = centre ? 0.9 : 5.0 * std::sqrt(2.0) + 0.2;
      ASSERT_LE(distanceToExposure(StageXForColumn(x, 1), StageYForRow(y, 1)), reach)
          << x << "," << y;
      Rgb colour{};
      ASSERT_TRUE(recordedDirectPixel(SurfaceWindow::Main, x + 116, 1014 - y, colour));
      ASSERT_EQ(std::tuple(colour.red, colour.green, colour.blue), std::tuple(0, 255, 0));
    }
  }
  const int written = 70 * 60 + 50 * 40 + (120 + 2 * 64) + (160 + 3 * 64) + 13 + 13;
  EXPECT_EQ(darkCells(finalPattern), written) << "nothing outside it was written";
  EXPECT_EQ(station.doneCells, written) << "each cell by one pass only";
}

// With "Center Writing Only" the defocus and the coarse pass are left out.
TEST_F(RasterWriting, AZoomedCentreOnlyRunWritesTheFineTargetResampledAtThatZoom) {
  fillGrid(zoomedPattern, kDarkCell);  // whatever an earlier view left there
  station.zoom = 0.75;
  station.defocusUm = 5;
  darkInMask(480, 480, 520, 520);
  darkInMask(100, 100, 120, 110);
  centerWritingOnly = 1;
  StartRasterWriting();
  EXPECT_EQ(station.doneCells, 30 * 30);  // 40 cells at 0.75
  EXPECT_EQ(joined(sentCommands("L")), "");
}

}  // namespace
