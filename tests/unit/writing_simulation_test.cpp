// The writing simulation: the resampling at zoom in and out, and the display the operator
// sees while a mask is written on the virtual station.
#include "pattern/writing_simulation.h"

#include <array>
#include <set>

#include "app/command_dispatch.h"
#include "app/shell_commands.h"
#include "app/startup.h"
#include "jobs/raster_writing.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"
#include "sim/virtual_camera.h"

namespace {

using Simulation = PatternTest;

TEST_F(Simulation, AZoomOutStepShrinksIntoTheCentreAndAZoomInStepMagnifiesIt) {
  setCell(targetPattern, 0, 0, kDarkCell);
  setCell(targetPattern, 125, 125, kDarkCell);
  resamplePattern(targetPattern, zoomedPattern);
  EXPECT_TRUE(std::equal(targetPattern.cells, targetPattern.cells + 1000000, zoomedPattern.cells));
  station.zoom = 0.75;
  resamplePattern(targetPattern, zoomedPattern);
  EXPECT_EQ(cellGrid.zoomedHeight, 750);
  EXPECT_EQ(getCell(zoomedPattern, 125, 125), kDarkCell);            // target (0, 0)
  EXPECT_EQ(getCell(zoomedPattern, 125 + 94, 125 + 94), kDarkCell);  // 94 / 0.75 = 125.3
  EXPECT_EQ(darkCells(zoomedPattern), 2);
  station.zoom = kZoomInFactor;
  resamplePattern(targetPattern, zoomedPattern);
  EXPECT_EQ(cellGrid.zoomedWidth, 1000);
  EXPECT_EQ(getCell(zoomedPattern, 1, 1), kDarkCell);  // target (125, 125): 1 / 1.3333334 is 0
  EXPECT_EQ(getCell(zoomedPattern, 2, 2), kBrightCell);
}

// The station as the program starts it: the virtual board and camera attached, the whole
// pattern to be written.
class WrittenMask : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    virtualCameraReset();
    centerWritingOnly = 0;
    startUpDevices();
  }
};

using Points = std::set<std::pair<int, int>>;
constexpr uint32_t kBlack = 0x000000, kWhite = 0xFFFFFF, kBlue = 0x0000FF, kGreen = 0x00FF00;

uint32_t shownAt(int x, int y) {
  const Rgb c = recordedScreenPixel(x, y);
  return static_cast<uint32_t>(c.red << 16 | c.green << 8 | c.blue);
}

// The display points inside the writing area's green outline (116, 14) - (1115, 1013)
// that show rgb.
Points shown(uint32_t rgb) {
  Points found;
  for (int y = 15; y < 1013; ++y) {
    for (int x = 117; x < 1115; ++x)
      if (shownAt(x, y) == rgb) found.insert({x, y});
  }
  return found;
}

TEST_F(WrittenMask, TheMaskTheBlueTargetAndTheWrittenCellsCoverTheSamePixels) {
  // With nothing to write, the camera view's redraw shows the camera picture just as the
  // capture did, inside the field's edges.
  dispatchCommand(IDC_CAMERA_CAPTURE);
  std::vector<uint32_t> captured;
  for (int y = 1; y < kDisplayHeight; ++y) {
    for (int x = 1; x < kDisplayWidth; ++x) captured.push_back(shownAt(x, y));
  }
  dispatchCommand(IDC_SHOW);
  int changed = 0;
  for (int y = 1, i = 0; y < kDisplayHeight; ++y) {
    for (int x = 1; x < kDisplayWidth; ++x) changed += shownAt(x, y) != captured[i++];
  }
  EXPECT_EQ(changed, 0);

  // A 100 x 100 mask, each picture pixel 10 x 10 cells: a dark square in the fine centre
  // and one in the coarse outer area. Cell (x, y), row 0 at the bottom, shows at
  // (116 + x, 1014 - y): picture row r from the top covers display rows 15 + 10 r ...
  std::vector<uint32_t> argb(100 * 100, 0xFFFFFFFF);
  Points cells;
  for (const auto& [left, top, right, bottom] : {std::array{46, 47, 54, 53}, {10, 70, 15, 75}}) {
    for (int row = top; row < bottom; ++row) {
      for (int column = left; column < right; ++column) {
        argb[static_cast<size_t>(row) * 100 + column] = 0xFF000000;
        for (int i = 0; i < 100; ++i)
          cells.insert({116 + 10 * column + i % 10, 15 + 10 * row + i / 10});
      }
    }
  }
  recordedRegisterPicture(L"mask.png", pictureOf(100, 100, argb));
  recordedQueueFileChoice(L"mask.png");
  dispatchCommand(IDM_IMPORT_IMAGE);
  EXPECT_EQ(shown(kBlack), cells) << "the imported picture";
  dispatchCommand(IDM_MASK_PATTERN);
  EXPECT_EQ(shown(kBlack), cells) << "the mask pattern";
  dispatchCommand(IDM_SIMULATE_WRITING);
  EXPECT_EQ(shown(kBlue), cells) << "the simulation";
  dispatchCommand(IDC_START_WRITING);
  ASSERT_TRUE(hasLine("box Progress: All Writings finished"));
  EXPECT_EQ(shown(kGreen), cells) << "the written cells";
  EXPECT_TRUE(shown(kBlue).empty());

  // "Show" composes the whole display afresh: the blue target, the camera picture in its
  // field, white elsewhere; nothing of the mask or the written cells is left.
  dispatchCommand(IDC_SHOW);
  EXPECT_EQ(shown(kBlue), cells);
  EXPECT_TRUE(shown(kGreen).empty());
  const IntRect field = station.cameraRect;
  int stale = 0;
  for (int y = 0; y < kDisplayHeight; ++y) {
    for (int x = 0; x < kDisplayWidth; ++x) {
      const bool outline = (x == 116 || x == 1115 || y == 14 || y == 1013) && x >= 116 &&
                           x <= 1115 && y >= 14 && y <= 1013;
      const bool scaleBar = x >= 950 && x <= 1050 && y >= 950 && y < 955;
      const bool camera = x > field.left && x < field.right && y > field.top && y < field.bottom;
      if (outline || scaleBar || camera || cells.count({x, y}) != 0) continue;
      stale += shownAt(x, y) != kWhite;
    }
  }
  EXPECT_EQ(stale, 0);
}

}  // namespace
