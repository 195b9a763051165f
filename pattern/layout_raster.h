// A layout imported at true scale: its shapes on one layer rasterized into cells of the
// magnification's micrometres, possibly larger than one writing area. The layout import
// fills it; the writing run cuts it into fields of one writing area each. It owns no
// drawing and no file reading.
#pragma once

#include <cstdint>
#include <vector>

struct LayoutRaster {
  int widthCells = 0;  // 0: no layout held
  int heightCells = 0;
  double cellUm = 1;  // the magnification it was rasterized at
  // Where the raster's centre lies from the writing reference (the centre of the writing
  // area), in um, x right and y up as on the display.
  double centreXUm = 0;
  double centreYUm = 0;
  // widthCells x heightCells, 1 inside a shape; row 0 is the layout's top.
  std::vector<uint8_t> dark;
};

extern LayoutRaster heldLayout;
extern double fieldOverlapUm;  // the operator's overlap of neighbouring fields, 0 by default
