// The exposure picture: the resist over the writing area developed from the board's
// exposure log (sim/resist_model.h), saved as a PNG, and compared cell by cell with the
// target pattern. The virtual station saves one after every writing run; the forecast
// program calls the same functions.
//
// The picture has kExposurePixelsPerCell x kExposurePixelsPerCell grey pixels per cell, its
// top row the writing area's top row as the display shows it (cell row 999 of 1000, rows
// counting up from the bottom): dark (40) where the resist developed, light (225) elsewhere.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "pattern/pattern_stores.h"
#include "sim/virtual_station.h"

constexpr int kExposurePixelsPerCell = 2;
constexpr uint8_t kExposureDarkGrey = 40;
constexpr uint8_t kExposureLightGrey = 225;

// The writing area on the stage: cell (c, r) is written at stage (cell0X + c * cellUm,
// cell0Y + r * cellUm), as the raster engine places it; the area is cells x cells.
struct ExposureArea {
  double cell0XUm = 0;
  double cell0YUm = 0;
  double cellUm = 1;
  int cells = kPatternSide;
};

// The developed area: pixels (cells x pixels per cell)², rows top-down, 1 where dark.
struct DevelopedArea {
  int side = 0;  // pixels per row and rows
  std::vector<uint8_t> dark;
  bool pixelDark(int x, int yFromTop) const {
    return dark[static_cast<size_t>(yFromTop) * side + x] != 0;
  }
  // Cell (c, r), row 0 at the bottom: dark when at least half its pixels are.
  bool cellDark(int column, int row) const;
};

DevelopedArea developExposure(const std::vector<ExposureSegment>& log, const ExposureArea& area);
bool saveExposurePicture(const std::filesystem::path& path, const DevelopedArea& developed);
// Develops the virtual station's log up to nowMs (the clock the board runs on) over the
// area and saves it; false when the file could not be written.
bool saveExposurePicture(const std::wstring& path, const ExposureArea& area, uint64_t nowMs);
// Reads a saved picture back; false when it is not one.
bool loadExposurePicture(const std::filesystem::path& path, DevelopedArea& developed);

// Per cent of cells whose developed state matches the target (0 dark): over the fine
// pass's centre square and over the cells the coarse pass covers outside its centre, as
// the raster engine splits them for block side cellSize.
struct ExposureAgreement {
  double fineCentrePercent = 0;
  double coarseOutsidePercent = 0;
  int fineCells = 0;
  int coarseCells = 0;
};
// The target is a 1000 x 1000 pattern grid.
ExposureAgreement exposureAgreement(const DevelopedArea& developed, const MaskPattern& target,
                                    int cellSize);
