// The pattern stores' accessors never refuse a place: out of range is the nearest edge.
#include "pattern/pattern_stores.h"

#include "pattern_fixture.h"

namespace {

using PatternStores = PatternTest;

TEST_F(PatternStores, OutOfRangePlacesAreTheNearestEdgeCellOrPixel) {
  setCell(finePattern, -5, 2000, kDarkCell);
  EXPECT_EQ(getCell(finePattern.cells, 1000, 1000, 0, 999), kDarkCell);
  setRed(maskImage, 999, 0, 42);
  EXPECT_EQ(getRed(maskImage, 1000, -3), 42);
}

}  // namespace
