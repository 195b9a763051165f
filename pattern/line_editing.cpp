// Line editing with the pointer: see line_editing.h.
#include "pattern/line_editing.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "pattern/line_display.h"
#include "resources/resource.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"

namespace {

constexpr int kHitReachPixels = 4;  // strict: a pixel hits when |dx| and |dy| are below it

bool strictlyInside(const IntRect& rect, IntPoint point) {
  return point.x > rect.left && point.x < rect.right && point.y > rect.top && point.y < rect.bottom;
}

bool hits(IntPoint point, int64_t x, int64_t y) {
  return std::llabs(x - point.x) < kHitReachPixels && std::llabs(y - point.y) < kHitReachPixels;
}

// Walks the segment one pixel column at a time (alongX) or one row at a time, from the
// lesser end up to one before the greater; only the columns or rows near point can hit,
// so the walk is limited to them.
bool walkHits(IntPoint a, IntPoint b, IntPoint point, bool alongX) {
  const int64_t a1 = alongX ? a.x : a.y, b1 = alongX ? b.x : b.y;
  const int64_t a2 = alongX ? a.y : a.x, b2 = alongX ? b.y : b.x;
  const int64_t near = alongX ? point.x : point.y;
  const int64_t first = std::max(std::min(a1, b1), near - kHitReachPixels + 1);
  const int64_t last = std::min(std::max(a1, b1) - 1, near + kHitReachPixels - 1);
  for (int64_t t = first; t <= last; ++t) {
    const int64_t other = a2 + (b2 - a2) * (t - a1) / (b1 - a1);
    if (alongX ? hits(point, t, other) : hits(point, other, t)) return true;
  }
  return false;
}

void invertRubberBand() {
  Canvas* canvas = canvasOnWindow(SurfaceWindow::Display);
  canvasInvertLine(canvas, linePattern.anchor, linePattern.current);
  canvasFree(canvas);
}

void addSegmentTo(IntPoint point) {
  LinePattern& lines = linePattern;
  lines.current = point;
  const LineSegment segment = {pixelToMicrometresX(lines.anchor.x),
                               pixelToMicrometresY(lines.anchor.y), pixelToMicrometresX(point.x),
                               pixelToMicrometresY(point.y), lines.widthClass};
  Canvas* canvas = canvasOnWindow(SurfaceWindow::Display);
  canvasLine(canvas, lines.anchor, lines.current, penWidthPixels(lines.widthClass), kLineColour);
  canvasFree(canvas);
  lines.segments.push_back(segment);
  lines.anchor = point;
}

}  // namespace

void leftClick(IntPoint point) {
  if (operationRunning()) return;
  LinePattern& lines = linePattern;
  if (!strictlyInside(station.scaledAreaRect, point) || lines.active != 1) {
    lines.drawing = false;
    return;
  }
  if (lines.erasing) {
    lines.drawing = false;
    eraseLineAt(point);
  } else if (lines.drawing) {
    addSegmentTo(point);
  } else {
    lines.drawing = true;
    lines.anchor = lines.current = point;
  }
}

void pointerMove(IntPoint point) {
  LinePattern& lines = linePattern;
  if (lines.active != 1 || !lines.drawing) return;
  invertRubberBand();
  lines.current = point;
  invertRubberBand();
}

void rightClick() {
  if (!linePattern.drawing) return;
  linePattern.drawing = false;
  invertRubberBand();
}

int widthRadioFor(int widthClass) {
  switch (widthClass) {
    case 1: return IDC_LINE_WIDTH_1;
    case 3: return IDC_LINE_WIDTH_3;
    case 6: return IDC_LINE_WIDTH_6;
    default: return IDC_LINE_WIDTH_10;
  }
}

void setWidthClass(int widthUm) {
  linePattern.widthClass = widthUm;
  linePattern.erasing = 0;
  feedbackCheckRadio(IDC_LINE_WIDTH_1, IDC_LINE_ERASE, widthRadioFor(widthUm));
}

void startErasing() {
  linePattern.erasing = 1;
  feedbackCheckRadio(IDC_LINE_WIDTH_1, IDC_LINE_ERASE, IDC_LINE_ERASE);
  feedbackShowCrossCursor();
}

void eraseLineAt(IntPoint point) {
  std::vector<LineSegment>& segments = linePattern.segments;
  for (auto it = segments.begin(); it != segments.end(); ++it) {
    const IntPoint a = hitTestPixel(it->x1, it->y1);
    const IntPoint b = hitTestPixel(it->x2, it->y2);
    if (!walkHits(a, b, point, true) && !walkHits(a, b, point, false)) continue;
    // The display window lies at the main window's origin, so the grey covers the line.
    drawSegment(SurfaceWindow::Main, *it, kPaintedOutColour);
    segments.erase(it);
    return;
  }
}

void deleteAllLines() {
  for (const LineSegment& segment : linePattern.segments)
    drawSegment(SurfaceWindow::Main, segment, kPaintedOutColour);
  linePattern.segments.clear();
  linePattern.drawing = false;
}
