// The pattern stores: clamping accessors and the grey value.
#include "pattern/pattern_stores.h"

#include <gtest/gtest.h>

namespace {

TEST(PatternStores, OutOfRangeCellsAreTheNearestEdgeCell) {
  MaskPattern& grid = finePattern;
  setCell(grid, -5, 2000, 7);
  EXPECT_EQ(getCell(grid, -1, 5000), 7);
  EXPECT_EQ(getCell(grid.cells, 1000, 1000, 0, 999), 7);
  setCell(grid, 0, 999, kBrightCell);
}

TEST(PatternStores, APictureReadsItsNearestEdgePixel) {
  ImageBuffer picture = simulationImage;  // the record by value: the same pixels
  setRed(picture, 999, 0, 42);
  EXPECT_EQ(getRed(picture, 1000, 0), 42);
  setBlue(picture, 3, 4, 30);
  setGreen(picture, 3, 4, 60);
  setRed(picture, 3, 4, 91);
  EXPECT_EQ(grey(picture, 3, 4), 60);  // (30 + 60 + 91) / 3, truncated
}

}  // namespace
