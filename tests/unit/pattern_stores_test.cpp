// The pattern stores: clamping accessors, the grey value, and the state they start in.
#include "pattern/pattern_stores.h"

#include <gtest/gtest.h>

#include "camera/heap_blocks.h"

namespace {

TEST(PatternStores, OutOfRangeCellsAreTheNearestEdgeCell) {
  MaskPattern& grid = finePattern;
  setCell(grid, -5, 2000, 7);
  EXPECT_EQ(getCell(grid, 0, 999), 7);
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

TEST(PatternStores, TheBlockSizeOf5Gives200BlocksASide) {
  EXPECT_EQ(cellGrid.cellSize, 5);
  EXPECT_EQ(cellGrid.cellsX, 200);
  EXPECT_EQ(cellGrid.cellsY, 200);
}

TEST(PatternStores, AGridThatCannotBeAllocatedIsNamedInTheTitleText) {
  const int failedBefore = heapAllocFailed;
  const char* textBefore = heapAllocFailureText;
  reportHeapAllocFailure(kHeapAllocArrayFailureText);
  EXPECT_STREQ(heapAllocFailureText, "error in HeapAlloc for array");
  reportHeapAllocFailure();
  EXPECT_STREQ(heapAllocFailureText, "error in HeapAlloc");
  heapAllocFailed = failedBefore;
  heapAllocFailureText = textBefore;
}

}  // namespace
