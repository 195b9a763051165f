// A reader of GDSII stream files, small and our own: the library's units, its structures
// with their boundaries, paths (width, end types 0, 1, 2 and 4 with their extensions),
// boxes, and references (SREF and AREF with reflection, magnification and angle). Texts
// and nodes are read past. The shapes of one layer of a top cell come out as polygons
// in micrometres. Any fault of the file gives a message, never a crash or a hang.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pattern/layout_geometry.h"

struct GdsiiElement {
  enum class Kind { Boundary, Path, Box, Reference, Array } kind = Kind::Boundary;
  int layer = 0;
  int datatype = 0;                 // the box type for a box
  std::vector<LayoutPoint> points;  // database units
  double width = 0;                 // database units; negative: not scaled by references
  int pathType = 0;
  double beginExtension = 0;  // path type 4
  double endExtension = 0;
  std::string cellName;  // references
  bool reflected = false;
  double magnification = 1;
  double angleDegrees = 0;
  int columns = 1;  // arrays
  int rows = 1;
};

struct GdsiiStructure {
  std::string name;
  std::vector<GdsiiElement> elements;
};

struct GdsiiLibrary {
  double umPerDatabaseUnit = 0;
  std::vector<GdsiiStructure> structures;
  std::vector<std::string> layers;    // "layer/datatype", in numeric order
  std::vector<std::string> topCells;  // structures no other one refers to, in file order
};

// Reads a whole stream file. Empty on success, else what is wrong with it.
std::string readGdsii(const uint8_t* data, size_t size, GdsiiLibrary& library);
// The shapes of layer ("layer/datatype") in topCell with everything it refers to, in um.
// Circles of round path ends stray at most toleranceUm. Empty on success, else why not.
std::string gdsiiShapes(const GdsiiLibrary& library, const std::string& layer,
                        const std::string& topCell, double toleranceUm, LayoutShapes& shapes);
