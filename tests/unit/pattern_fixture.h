// The pattern stores as the program starts them: both pictures white and none picked,
// every grid bright, the cluster table allocated, the recorded display empty; and helpers
// that make pictures and grids with dark rectangles.
#pragma once

#include <algorithm>
#include <cstring>

#include "pattern/cluster_table.h"
#include "pattern/mask_import.h"
#include "pattern/pattern_stores.h"
#include "sim/recorded_display.h"
#include "station/view_geometry.h"
#include "station_fixture.h"

inline void fillGrid(MaskPattern& grid, int32_t value) {
  std::fill_n(grid.cells, static_cast<size_t>(kPatternSide) * kPatternSide, value);
}

inline void resetPatternStores() {
  recordedDisplayReset();
  recomputeViewGeometry(station);  // the writing area at (116, 14, 1116, 1014)
  for (ImageBuffer* picture : {&maskImage, &alignmentMarkImage}) {
    std::memset(picture->pixels, 0xFF, static_cast<size_t>(picture->byteSize));
  }
  for (MaskPattern* grid :
       {&targetPattern, &zoomedPattern, &finePattern, &coarsePattern, &finalPattern}) {
    fillGrid(*grid, kBrightCell);
  }
  if (clusterTable == nullptr) allocateClusterTable();
  maskPicturePath.clear();
  alignmentMarkPicturePath.clear();
}

// Cells left <= x < right, low <= y < high of a grid with the given row stride, as far as
// they lie in a stride x stride grid.
inline void darkRectangle(int32_t* cells, int stride, int left, int low, int right, int high) {
  right = std::min(right, stride);
  high = std::min(high, stride);
  for (int y = low; y < high; ++y) {
    for (int x = left; x < right; ++x) cells[static_cast<size_t>(y) * stride + x] = kDarkCell;
  }
}

inline void paintPicture(ImageBuffer& picture, int left, int low, int right, int high,
                         uint8_t level) {
  for (int y = low; y < high; ++y) {
    for (int x = left; x < right; ++x) {
      setRed(picture, x, y, level);
      setGreen(picture, x, y, level);
      setBlue(picture, x, y, level);
    }
  }
}

// A picture file of one colour per pixel (0xAARRGGBB, in memory blue, green, red, alpha),
// given top row first as a person draws it.
inline RecordedPicture pictureOf(int width, int height, const std::vector<uint32_t>& argbTopDown) {
  RecordedPicture picture{width, height,
                          std::vector<uint8_t>(static_cast<size_t>(width) * height * 4)};
  for (int y = 0; y < height; ++y) {
    std::memcpy(&picture.pixels[static_cast<size_t>(height - 1 - y) * width * 4],
                &argbTopDown[static_cast<size_t>(y) * width], static_cast<size_t>(width) * 4);
  }
  return picture;
}

inline int darkCells(const MaskPattern& grid) {
  return static_cast<int>(std::count(grid.cells, grid.cells + kPatternSide * kPatternSide, 0));
}

class PatternTest : public StationTest {
 protected:
  void SetUp() override {
    StationTest::SetUp();
    resetPatternStores();
  }
};
