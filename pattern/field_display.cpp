// The display of a layout's fields: see field_display.h.
#include "pattern/field_display.h"

#include <algorithm>

#include "camera/display_surface.h"
#include "camera/live_render.h"
#include "pattern/pattern_stores.h"
#include "station/station.h"

namespace {

const Rgb kPaper{255, 255, 255};
const Rgb kToWrite{0, 0, 255};  // the simulation's blue
const Rgb kGrid{128, 128, 128};
const Rgb kWriting{255, 0, 0};

// Display point (x, y), origin top-left, in the bottom-up simulation picture.
void paint(int x, int y, const Rgb& colour) {
  ImageBuffer& picture = simulationImage;
  if (x < 0 || y < 0 || x >= picture.width || y >= picture.height) return;
  const int row = picture.height - 1 - y;
  setRed(picture, x, row, colour.red);
  setGreen(picture, x, row, colour.green);
  setBlue(picture, x, row, colour.blue);
}

void outline(int left, int top, int right, int bottom, int thickness, const Rgb& colour) {
  for (int t = 0; t < thickness; ++t) {
    for (int x = left; x <= right; ++x) {
      paint(x, top + t, colour);
      paint(x, bottom - t, colour);
    }
    for (int y = top; y <= bottom; ++y) {
      paint(left + t, y, colour);
      paint(right - t, y, colour);
    }
  }
}

}  // namespace

void showLayoutFields(const LayoutRaster& layout, const FieldPlan& plan, int writing) {
  if (plan.fields.empty()) return;
  const int step = kPatternSide - plan.overlapCells;
  const int gridWidth = plan.columns * step + plan.overlapCells;
  const int gridHeight = plan.rows * step + plan.overlapCells;
  int gridLeft = plan.fields.front().firstX;
  int gridTop = plan.fields.front().firstY;
  for (const LayoutField& f : plan.fields) {
    gridLeft = std::min(gridLeft, f.firstX);
    gridTop = std::min(gridTop, f.firstY);
  }
  const IntRect area = station.writingAreaRect;
  const int areaWidth = area.right - area.left;
  const int areaHeight = area.bottom - area.top;
  const double scale = std::min(static_cast<double>(areaWidth) / gridWidth,
                                static_cast<double>(areaHeight) / gridHeight);
  const int left = area.left + static_cast<int>((areaWidth - gridWidth * scale) / 2);
  const int top = area.top + static_cast<int>((areaHeight - gridHeight * scale) / 2);
  auto displayX = [&](int cell) { return left + static_cast<int>((cell - gridLeft) * scale); };
  auto displayY = [&](int cell) { return top + static_cast<int>((cell - gridTop) * scale); };

  for (int y = 0; y < simulationImage.height; ++y) {
    for (int x = 0; x < simulationImage.width; ++x) paint(x, y, kPaper);
  }
  // Each display pixel shows the layout cell under its top-left corner; a cell larger
  // than a pixel covers several.
  const int right = displayX(gridLeft + gridWidth);
  const int bottom = displayY(gridTop + gridHeight);
  for (int y = top; y < bottom; ++y) {
    const int cy = gridTop + static_cast<int>((y - top) / scale);
    if (cy < 0 || cy >= layout.heightCells) continue;
    for (int x = left; x < right; ++x) {
      const int cx = gridLeft + static_cast<int>((x - left) / scale);
      if (cx < 0 || cx >= layout.widthCells) continue;
      if (layout.dark[static_cast<size_t>(cy) * layout.widthCells + cx] != 0) paint(x, y, kToWrite);
    }
  }
  auto fieldOutline = [&](const LayoutField& f, int thickness, const Rgb& colour) {
    outline(displayX(f.firstX), displayY(f.firstY), displayX(f.firstX + kPatternSide) - 1,
            displayY(f.firstY + kPatternSide) - 1, thickness, colour);
  };
  for (const LayoutField& f : plan.fields) fieldOutline(f, 1, kGrid);
  if (writing >= 0 && writing < static_cast<int>(plan.fields.size()))
    fieldOutline(plan.fields[static_cast<size_t>(writing)], 3, kWriting);
  RenderLive(SurfaceWindow::Display, simulationImage);
}
