// A reader of ASCII DXF drawings, small and our own: the header's $INSUNITS, the layer
// table, and in ENTITIES the shapes with an inside: closed LWPOLYLINE and POLYLINE (with
// their VERTEX entities up to SEQEND; bulges are arcs), CIRCLE and SOLID, each on its
// layer (group 8). Other entities and sections are read past. Any fault of the file gives
// a message, never a crash or a hang.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pattern/layout_geometry.h"

struct DxfShape {
  std::string layer;
  bool circle = false;
  std::vector<LayoutPoint> points;  // drawing units; a circle: its centre
  std::vector<double> bulges;       // per point of a polyline: the arc to the next point
  double radius = 0;
};

struct DxfDrawing {
  double umPerUnit = 1000;  // millimetres when $INSUNITS is missing or 0
  std::vector<DxfShape> shapes;
  std::vector<std::string> layers;  // the table's and the shapes', in name order
};

// Reads a whole drawing. Empty on success, else what is wrong with it.
std::string readDxf(const char* data, size_t size, DxfDrawing& drawing);
// The shapes on layer in um; circles and arcs stray at most toleranceUm. Empty on
// success, else why not.
std::string dxfShapes(const DxfDrawing& drawing, const std::string& layer, double toleranceUm,
                      LayoutShapes& shapes);
