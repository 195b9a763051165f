// The fields of a layout larger than one writing area: the layout cut into fields of
// 1000 x 1000 cells that share the operator's overlap with their neighbours, in the
// order they are written, each with its cells (as a mask picture) and the stage offset
// of its centre from the writing reference. It owns no writing and no drawing.
#pragma once

#include <vector>

#include "pattern/image_buffer.h"
#include "pattern/layout_raster.h"

struct LayoutField {
  int column = 0;  // place in the field grid, column 0 at the left, row 0 at the top
  int row = 0;
  int firstX = 0;  // the layout cell under the field's top-left cell (may lie outside)
  int firstY = 0;
  // Where the field's pattern cell (500, 500) lies from the writing reference, in um,
  // x right and y up: the stage offset of the field.
  double offsetXUm = 0;
  double offsetYUm = 0;
  int darkCells = 0;  // the layout's cells to write inside the field
};

struct FieldPlan {
  int columns = 0;
  int rows = 0;
  int overlapCells = 0;             // cells shared by neighbouring fields
  std::vector<LayoutField> fields;  // serpentine: top row left to right, the next back
  int darkCells = 0;                // over all fields (cells in an overlap count twice)
};

// True when the layout is held and does not fit in one writing area.
bool layoutNeedsFields(const LayoutRaster& layout);

// The field grid centred on the layout, with overlapUm rounded to whole cells (0 up to
// half a field); a layout that fits gives a single field.
FieldPlan planFields(const LayoutRaster& layout, double overlapUm);

// The layout's cell under the field's cell (x, y), row 0 at the bottom as in every
// pattern grid: true when dark; cells beyond the layout are bright.
bool fieldCellDark(const LayoutRaster& layout, const LayoutField& field, int x, int y);

// The field's cells as the mask picture a "Mask Pattern" of the field's picture leaves:
// black where dark, white elsewhere, 1000 x 1000 bottom-up.
void drawFieldPicture(const LayoutRaster& layout, const LayoutField& field, ImageBuffer image);
