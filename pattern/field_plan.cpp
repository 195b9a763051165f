// The field plan of a layout: see field_plan.h.
#include "pattern/field_plan.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "pattern/pattern_stores.h"

namespace {

// Fields needed along one side of extent cells when neighbours step by step cells.
int fieldsAlong(int extent, int overlap) {
  const int step = kPatternSide - overlap;
  if (extent <= kPatternSide) return 1;
  return (extent - overlap + step - 1) / step;
}

bool layoutCellDark(const LayoutRaster& layout, int x, int y) {
  if (x < 0 || y < 0 || x >= layout.widthCells || y >= layout.heightCells) return false;
  return layout.dark[static_cast<size_t>(y) * layout.widthCells + x] != 0;
}

}  // namespace

bool layoutNeedsFields(const LayoutRaster& layout) {
  return layout.widthCells > kPatternSide || layout.heightCells > kPatternSide;
}

FieldPlan planFields(const LayoutRaster& layout, double overlapUm) {
  FieldPlan plan;
  const double cellUm = layout.cellUm > 0 ? layout.cellUm : 1.0;
  const double overlap = std::round(overlapUm / cellUm);
  plan.overlapCells = static_cast<int>(std::clamp(overlap, 0.0, kPatternSide / 2.0));
  const int step = kPatternSide - plan.overlapCells;
  plan.columns = fieldsAlong(layout.widthCells, plan.overlapCells);
  plan.rows = fieldsAlong(layout.heightCells, plan.overlapCells);
  // The grid is centred on the layout; a grid wider than the layout leaves bright cells
  // at both ends.
  const int gridWidth = plan.columns * step + plan.overlapCells;
  const int gridHeight = plan.rows * step + plan.overlapCells;
  const int left = (layout.widthCells - gridWidth) / 2;
  const int top = (layout.heightCells - gridHeight) / 2;
  for (int row = 0; row < plan.rows; ++row) {
    for (int k = 0; k < plan.columns; ++k) {
      LayoutField field;
      field.column = row % 2 == 0 ? k : plan.columns - 1 - k;
      field.row = row;
      field.firstX = left + field.column * step;
      field.firstY = top + row * step;
      // The pattern's cell 500 lies under the writing reference; a cell's place is its
      // left (or bottom) edge, and the layout's rows run downwards.
      const int centreX = field.firstX + kPatternSide / 2;
      const int centreBelowY = field.firstY + kPatternSide / 2;
      field.offsetXUm = layout.centreXUm + (centreX - layout.widthCells / 2.0) * cellUm;
      field.offsetYUm = layout.centreYUm + (layout.heightCells / 2.0 - centreBelowY) * cellUm;
      for (int y = 0; y < kPatternSide; ++y) {
        for (int x = 0; x < kPatternSide; ++x) {
          if (layoutCellDark(layout, field.firstX + x, field.firstY + y)) ++field.darkCells;
        }
      }
      plan.darkCells += field.darkCells;
      plan.fields.push_back(field);
    }
  }
  return plan;
}

bool fieldCellDark(const LayoutRaster& layout, const LayoutField& field, int x, int y) {
  return layoutCellDark(layout, field.firstX + x, field.firstY + kPatternSide - 1 - y);
}

void drawFieldPicture(const LayoutRaster& layout, const LayoutField& field, ImageBuffer image) {
  if (image.pixels == nullptr) return;
  for (int y = 0; y < kPatternSide; ++y) {
    uint8_t* row = image.pixels + static_cast<size_t>(y) * kPatternSide * 4;
    for (int x = 0; x < kPatternSide; ++x) {
      const uint8_t value = fieldCellDark(layout, field, x, y) ? 0 : 255;
      std::memset(row + static_cast<size_t>(x) * 4, value, 3);
      row[static_cast<size_t>(x) * 4 + 3] = 0;
    }
  }
}
