// The shapes of an imported layout as polygons in micrometres, the outlines the readers
// build from paths and circles, and the rasterization of a layer's polygons into a
// LayoutRaster of cells of the magnification's micrometres. No file reading here (the
// GDSII and DXF readers) and no drawing (the layout import).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pattern/layout_raster.h"

struct LayoutPoint {
  double x = 0;  // um, x right and y up
  double y = 0;
};
using LayoutPolygon = std::vector<LayoutPoint>;

// What one import may produce at most: a file whose references multiply beyond this is
// refused with a message instead of filling the memory.
constexpr size_t kLayoutPointBudget = 20'000'000;
constexpr int kLayoutNestingLimit = 32;  // references inside references
// The largest raster an import makes: 400 million cells (20 mm square at 1 um).
constexpr double kLayoutCellBudget = 400e6;

// Placements of cells (references walked) one import may make at most.
constexpr size_t kLayoutPlacementBudget = 50'000'000;

// The polygons one layer of one cell gives, in um, with the points and placements spent
// so far and the budgets they may reach (smaller where a test must stay fast).
struct LayoutShapes {
  std::vector<LayoutPolygon> polygons;
  size_t points = 0;
  size_t placements = 0;
  size_t pointBudget = kLayoutPointBudget;
  size_t placementBudget = kLayoutPlacementBudget;
  // Adds polygon unless the budget is spent; false (and nothing added) then.
  bool add(LayoutPolygon polygon);
};

// The polygon of a circle whose chords stray at most toleranceUm inside it (8 corners at
// least, 4096 at most).
LayoutPolygon circlePolygon(double centreX, double centreY, double radius, double toleranceUm);
// The outline of a path of the given width through points as polygons: one quadrilateral
// per segment, the first and last extended outwards by beginExtension and endExtension,
// the corners filled up to their miter point, and round ends as circles of the width.
// Points that repeat are dropped; a path of one point gives nothing. False when the
// budget ran out.
bool appendPathOutline(const std::vector<LayoutPoint>& points, double width, double beginExtension,
                       double endExtension, bool roundEnds, double toleranceUm,
                       LayoutShapes& shapes);

// A cell is dark when its centre lies inside one of the polygons by the non-zero rule
// (each polygon on its own, the polygons united). Cells are cellUm wide, laid out so that
// their edges fall on multiples of cellUm from the writing reference once the polygons
// are shifted: by nothing (the layout's origin at the writing reference) or, with
// centreBox, by minus the centre of their bounding box. Fails with a message when the
// raster would exceed kLayoutCellBudget cells or nothing lies inside any polygon.
bool rasterizeLayout(const std::vector<LayoutPolygon>& polygons, double cellUm, bool centreBox,
                     LayoutRaster& raster, std::string& message);
