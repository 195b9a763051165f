// Edge finding: the boundary codes, the raster order and the 10,000 cap.
#include "pattern/edge_finding.h"

#include <gmock/gmock.h>

#include <random>

#include "app/command_dispatch.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

namespace {

class EdgeFinding : public PatternTest {
 protected:
  void findOn(const MaskPattern& grid, int width = kPatternSide, int height = kPatternSide) {
    findEdges(grid.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, width, height);
  }
  static int32_t code(int x, int y) { return cellGrid.edgeCodes[x][y]; }
};

TEST_F(EdgeFinding, ABrightGridHasNoEdgesAndASingleDarkCellIsTheOnlyPointWithCode33) {
  dispatchCommand(IDM_FIND_EDGES);
  EXPECT_EQ(edgePointCount, 0);
  EXPECT_TRUE(hasLine("status: Edge points:0 found "));
  setCell(targetPattern, 400, 300, kDarkCell);
  dispatchCommand(IDM_FIND_EDGES);
  ASSERT_EQ(edgePointCount, 1);
  EXPECT_EQ(edgePoints[0].x + edgePoints[0].y, 700);
  EXPECT_EQ(code(400, 300), 33);
}

// The grid's border acts as a bright neighbour.
TEST_F(EdgeFinding, AnAllDarkGridHasOnlyItsBorderAsEdges) {
  fillGrid(targetPattern, kDarkCell);
  findOn(targetPattern);
  EXPECT_EQ(edgePointCount, 3996);
  const int corners[][3] = {{0, 0, 11},   {999, 999, 22}, {999, 0, 12},
                            {0, 999, 21}, {500, 0, 10},   {500, 999, 20},
                            {0, 500, 1},  {999, 500, 2},  {500, 500, 0}};
  for (const auto& [x, y, c] : corners) EXPECT_EQ(code(x, y), c) << x << "," << y;
  // Raster order: row 0 first, from x = 0; then (0, 1), (999, 1), ...
  EXPECT_EQ(edgePoints[1000].x + edgePoints[1000].y, 1);
  EXPECT_EQ(edgePoints[1001].x, 999);
}

TEST_F(EdgeFinding, TheListStopsAt10000PointsAndTheLastKeepsNoCode) {
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; x += 2) setCell(targetPattern, x, y, kDarkCell);
  }
  dispatchCommand(IDM_FIND_EDGES);
  ASSERT_EQ(edgePointCount, 10000);
  const EdgePoint last = edgePoints[9999];
  EXPECT_EQ(last.x, 998);  // the 20th row of 500 dark columns ends at x = 998
  EXPECT_EQ(last.y, 19);
  EXPECT_EQ(code(last.x, last.y), 0);
  EXPECT_EQ(code(996, 19), 3);
  EXPECT_EQ(code(0, 20), 0);  // never examined
}

TEST_F(EdgeFinding, TheScanGivesEveryCellTheCodeOfTheSingleCellRule) {
  std::mt19937 random(3);
  std::bernoulli_distribution dark(0.45);
  for (auto [width, height] : {std::pair{1000, 1000}, {37, 23}, {1, 5}}) {
    SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
    for (int i = 0; i < width * height; ++i) finePattern.cells[i] = dark(random) ? 0 : 1;
    findOn(finePattern, width, height);
    int expectedPoints = 0;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const int32_t expected = edgeCode(finePattern.cells, width, height, x, y);
        if (expected != 0) ++expectedPoints;
        if (expectedPoints < 10000) {
          ASSERT_EQ(code(x, y), expected);
        }
      }
    }
    EXPECT_EQ(edgePointCount, std::min(expectedPoints, 10000));
  }
}

}  // namespace
