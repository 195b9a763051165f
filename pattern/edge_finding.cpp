// Edge finding: see edge_finding.h. findEdges reads each row with its two neighbour rows
// directly; the clamping read of edgeCode is kept for single cells and for the border.
#include "pattern/edge_finding.h"

#include <cstdio>
#include <cstring>

#include "camera/display_surface.h"
#include "station/feedback.h"
#include "station/status_display.h"

namespace {

constexpr int kRemainingScanFirst = 1;
constexpr int kRemainingScanLast = 998;

inline int32_t horizontalPart(bool left, bool right) {
  return left && right ? 3 : right ? 2 : left ? 1 : 0;
}
inline int32_t verticalPart(bool below, bool above) {
  return below && above ? 30 : above ? 20 : below ? 10 : 0;
}

}  // namespace

int32_t edgeCode(const int32_t* cells, int width, int height, int x, int y) {
  const bool c = getCell(cells, width, height, x, y) != 0;
  const bool l = x > 0 ? getCell(cells, width, height, x - 1, y) != 0 : true;
  const bool r = x + 1 < width ? getCell(cells, width, height, x + 1, y) != 0 : true;
  const bool u = y > 0 ? getCell(cells, width, height, x, y - 1) != 0 : true;
  const bool d = y + 1 < height ? getCell(cells, width, height, x, y + 1) != 0 : true;
  if (c) return 0;
  return horizontalPart(l, r) + verticalPart(u, d);
}

void findEdges(const int32_t* cells, int32_t** edgeCodes, EdgePoint* points, int32_t& count,
               int width, int height) {
  count = 0;
  std::memset(points, 0, sizeof(EdgePoint) * kEdgePointCapacity);
  for (int x = 0; x < width; ++x) std::memset(edgeCodes[x], 0, sizeof(int32_t) * height);
  bool full = false;
  for (int y = 0; y < height && !full; ++y) {
    const int32_t* row = cells + static_cast<size_t>(y) * width;
    const int32_t* below = y > 0 ? row - width : nullptr;
    const int32_t* above = y + 1 < height ? row + width : nullptr;
    for (int x = 0; x < width; ++x) {
      if (row[x] != 0) continue;
      const bool l = x == 0 || row[x - 1] != 0;
      const bool r = x + 1 == width || row[x + 1] != 0;
      const bool u = below == nullptr || below[x] != 0;
      const bool d = above == nullptr || above[x] != 0;
      const int32_t code = horizontalPart(l, r) + verticalPart(u, d);
      if (code == 0) continue;
      points[count] = {static_cast<int16_t>(x), static_cast<int16_t>(y)};
      ++count;
      if (count >= kEdgePointCapacity) {
        full = true;  // the last point keeps no code: the list is full before it is written
        break;
      }
      edgeCodes[x][y] = code;
    }
  }
  char text[64];
  std::snprintf(text, sizeof text, "Edge points:%d found ", count);
  showStatus(text);
}

void scanRemainingPoints() {
  remainingPointCount = 0;
  std::memset(remainingPoints, 0, sizeof remainingPoints);
  Canvas* window = canvasOnWindow(SurfaceWindow::Main);
  bool full = false;
  for (int y = kRemainingScanFirst; y <= kRemainingScanLast && !full; ++y) {
    for (int x = kRemainingScanFirst; x <= kRemainingScanLast; ++x) {
      if (getCell(targetPattern, x, y) != 0) continue;
      remainingPoints[remainingPointCount] = {static_cast<int16_t>(x), static_cast<int16_t>(y)};
      ++remainingPointCount;
      if (remainingPointCount >= kEdgePointCapacity) {
        full = true;
        break;
      }
      canvasSetPixel(window, x, kPatternSide - y, {255, 0, 0});
    }
  }
  canvasFree(window);
  char text[64];
  std::snprintf(text, sizeof text, "Remaining points:%d found ", remainingPointCount);
  showStatus(text);
}
