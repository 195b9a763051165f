// The fixed raster stores of pattern preparation and raster writing: the five 1000 x 1000
// pattern grids, the mask, alignment-mark and simulation pictures, the edge-code and
// block-cell record, and the edge-point tables. All are made once before the windows
// exist and overwritten in place; nothing here is allocated while a pattern is prepared
// or written. Filling them belongs to the import, edge, grouping and writing modules.
#pragma once

#include <cstdint>

#include "pattern/cluster_table.h"
#include "pattern/image_buffer.h"

constexpr int kPatternSide = 1000;  // cells per row and rows of every pattern grid
constexpr int kEdgePointCapacity = 10000;

// Cell values: 0 dark (to write, or written in the engine's own copies), 1 bright.
constexpr int32_t kDarkCell = 0;
constexpr int32_t kBrightCell = 1;

// One grid of pattern cells; cell (x, y) is cells[y * width + x], row 0 at the bottom.
struct MaskPattern {
  MaskPattern();

  int32_t* cells = nullptr;
  int32_t width = kPatternSide;
  int32_t height = kPatternSide;
};

// Coordinates out of range are replaced by the nearest edge cell, never refused.
void setCell(MaskPattern& pattern, int x, int y, int32_t value);
int32_t getCell(const MaskPattern& pattern, int x, int y);
int32_t getCell(const int32_t* cells, int width, int height, int x, int y);

// Bytes 2, 1, 0 of pixel (x, y), clamped into the record's width and height.
uint8_t getRed(const ImageBuffer& image, int x, int y);
uint8_t getGreen(const ImageBuffer& image, int x, int y);
uint8_t getBlue(const ImageBuffer& image, int x, int y);
void setRed(ImageBuffer& image, int x, int y, uint8_t value);
void setGreen(ImageBuffer& image, int x, int y, uint8_t value);
void setBlue(ImageBuffer& image, int x, int y, uint8_t value);
// (blue + green + red) / 3 of a 1000-pixel-wide buffer, x and y clamped into 0..999.
int grey(const ImageBuffer& image, int x, int y);

// Edge codes and the block cells of a raster run. Both tables are indexed [x][y].
struct CellGrid {
  CellGrid();
  ~CellGrid();
  CellGrid(const CellGrid&) = delete;
  CellGrid& operator=(const CellGrid&) = delete;

  int32_t** edgeCodes = nullptr;
  int32_t zoomedWidth = 0;  // extent of zoomedPattern in cells
  int32_t zoomedHeight = 0;
  int32_t cellSize = 5;  // side of one block cell in pattern cells, 2..10 from the dialog
  int32_t cellsX = kPatternSide / 5;
  int32_t cellsY = kPatternSide / 5;
  int32_t** visitTable = nullptr;
};

// Constructed in this order (CellGrid fills finalPattern with bright cells).
extern MaskPattern targetPattern;  // built from the mask and alignment-mark pictures
extern MaskPattern zoomedPattern;  // targetPattern resampled at the current zoom
extern MaskPattern finePattern;    // the central fine region of a raster run
extern MaskPattern coarsePattern;  // the block-reduced outer region, n x n with stride n
extern MaskPattern finalPattern;   // bright before each raster run, shown by "Final Pattern"
extern CellGrid cellGrid;

// The pictures; their valid flags are the main window's "Mask" and "Mark" check boxes.
// Both are 1000 x 1000, the writing area at one cell per pixel.
extern ImageBuffer maskImage;
extern ImageBuffer alignmentMarkImage;
// The composed simulation, 1232 x 1028: the whole display window, rows bottom-up.
extern ImageBuffer simulationImage;

extern EdgePoint edgePoints[kEdgePointCapacity];
extern int32_t edgePointCount;
extern EdgePoint remainingPoints[kEdgePointCapacity];
extern int32_t remainingPointCount;
