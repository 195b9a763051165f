// Grouping edge points into clusters, and its equality with the plain algorithm.
#include "pattern/grouping.h"

#include <gmock/gmock.h>

#include <memory>

#include "app/command_dispatch.h"
#include "grouping_reference.h"
#include "pattern/edge_finding.h"
#include "pattern_fixture.h"
#include "point_sets.h"
#include "resources/resource.h"

namespace {

class Grouping : public PatternTest {
 protected:
  int group(const PointSet& points, int scale = 1) {
    int32_t used = -1;
    groupClusters(points.data(), static_cast<int>(points.size()), clusterTable, used, scale);
    return used;
  }

  // The new status texts, without the padding and the line before.
  static std::vector<std::string> statusTexts() {
    std::vector<std::string> texts = linesAfter("status: ", recordedCalls());
    for (std::string& text : texts) text.resize(text.find("   "));
    return texts;
  }
  static std::vector<std::string> rectangles() {
    return linesAfter("rect ", recordedDisplayCalls());
  }
};

// The fast grouping and the reference on the same points: the same slots used, the same
// stop, and per slot the same count, points in the same order and the same bounds.
void expectSameAsReference(const PointSet& points) {
  static std::unique_ptr<Cluster[]> reference(new Cluster[kClusterCapacity]());
  static std::unique_ptr<Cluster[]> fast(new Cluster[kClusterCapacity]());
  const int n = static_cast<int>(points.size());
  const ClusterFormation expected = referenceFormClusters(points.data(), n, reference.get());
  const ClusterFormation got = formClusters(points.data(), n, fast.get());
  ASSERT_EQ(got.used, expected.used);
  ASSERT_EQ(got.stopped, expected.stopped);
  referenceClusterBounds(reference.get(), expected.used);
  clusterBounds(fast.get(), got.used);
  auto same = [](EdgePoint a, EdgePoint b) { return a.x == b.x && a.y == b.y; };
  for (int c = 0; c < expected.used; ++c) {
    const Cluster& e = reference[c];
    const Cluster& g = fast[c];
    ASSERT_EQ(g.count, e.count) << "cluster " << c;
    for (int i = 0; i < e.count; ++i) {
      ASSERT_TRUE(same(g.points[i], e.points[i])) << "cluster " << c << " point " << i;
    }
    if (e.count == 0) continue;
    EXPECT_TRUE(same(g.leftmost, e.leftmost) && same(g.topmost, e.topmost) &&
                same(g.rightmost, e.rightmost) && same(g.bottommost, e.bottommost))
        << "bounds of cluster " << c;
  }
}

TEST_F(Grouping, PointsTwoApartTouchAndThreeApartDoNot) {
  EXPECT_EQ(group({}), 0);
  EXPECT_EQ(statusTexts().back(), "0 clusters found");
  EXPECT_TRUE(rectangles().empty());
  EXPECT_EQ(group({pointAt(10, 10), pointAt(11, 11)}), 1);
  EXPECT_EQ(group({pointAt(10, 10), pointAt(12, 11)}), 2);
  EXPECT_EQ(statusTexts().back(), "2 clusters found");
}

TEST_F(Grouping, AUShapeScannedArmsFirstEndsAsOneCluster) {
  // Two arms rising from rows 0..49, joined by a bar at rows 50..52: in raster order the
  // arms open two clusters, and the merge passes join them.
  darkRectangle(targetPattern.cells, kPatternSide, 100, 0, 110, 50);
  darkRectangle(targetPattern.cells, kPatternSide, 200, 0, 210, 50);
  darkRectangle(targetPattern.cells, kPatternSide, 100, 50, 210, 53);
  dispatchCommand(IDM_FIND_EDGES);
  dispatchCommand(IDM_GROUPING);
  EXPECT_EQ(clusterCount, 2);  // slots used, the emptied one included
  EXPECT_EQ(clusterTable[0].count, edgePointCount);
  EXPECT_EQ(statusTexts().back(), "1 clusters found");
  // The rectangle of the whole U, y flipped into the writing area (116, 14).
  EXPECT_THAT(rectangles(), ::testing::ElementsAre("216,1014,325,962 pen 646464 hollow"));
}

TEST_F(Grouping, The998thSeparatePointOverflowsMaxGrain) {
  PointSet points;
  for (int i = 0; i < 998; ++i) points.push_back(pointAt((i % 100) * 10, (i / 100) * 10));
  EXPECT_EQ(group(points), 997);
  EXPECT_EQ(statusTexts(), (std::vector<std::string>{"MAX_GRAIN overflow: group counting stopped",
                                                     "997 clusters found"}));
  for (int c = 0; c < 997; ++c) ASSERT_EQ(clusterTable[c].count, 1);
}

// Random and adversarial sets, a point that touches two clusters, a cluster
// that reaches 9999 points, chains whose links arrive in reverse order (so every merge
// pass finds more), the ends of the 16-bit range, and edges of random masks.
TEST_F(Grouping, MatchesThePlainAlgorithm) {
  for (uint32_t seed = 1; seed <= 3; ++seed) {
    for (int side : {40, 150, 1000})
      expectSameAsReference(randomPoints(static_cast<int>(seed) * 3000, side, seed));
  }
  expectSameAsReference(adversarialPoints(10000));
  expectSameAsReference(manySmallClusters(10000));
  expectSameAsReference(longOutline(10000));
  PointSet lines;
  for (int x = 0; x < 6000; ++x) lines.push_back(pointAt(x, 4));
  for (int x = 0; x < 3997; ++x) lines.push_back(pointAt(x, 0));
  lines.push_back(pointAt(3996, 2));
  expectSameAsReference(lines);
  PointSet full;
  for (int x = 0; x < 10000; ++x) full.push_back(pointAt(x % 1000, (x / 1000) * 2));
  expectSameAsReference(full);
  PointSet chain;
  for (int i = 0; i < 900; ++i) chain.push_back(pointAt(3 * (899 - i), (i % 2) * 3));
  for (int i = 0; i < 900; ++i) chain.push_back(pointAt(3 * i + 1, 1 + (i % 3 == 0)));
  expectSameAsReference(chain);
  expectSameAsReference({pointAt(32767, 0), pointAt(-32768, 0), pointAt(32766, 1),
                         pointAt(-32767, -32768), pointAt(-32768, 32767)});
  std::mt19937 random(7);
  std::uniform_int_distribution<int> corner(0, 980), size(1, 40);
  for (int r = 0; r < 150; ++r) {
    const int x = corner(random), y = corner(random);
    darkRectangle(targetPattern.cells, kPatternSide, x, y, x + size(random), y + size(random));
  }
  findEdges(targetPattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, kPatternSide,
            kPatternSide);
  expectSameAsReference(PointSet(edgePoints, edgePoints + edgePointCount));
}

}  // namespace
