// Wide view imaging: a 3 x 3 mosaic of camera pictures round the present stage position,
// each drawn at a third of its size over the display area of the main window. The stage
// returns to where it started; the next live frame replaces the mosaic.
#pragma once

#include <cstdint>

#include "camera/display_surface.h"
#include "station/station.h"

constexpr double kWideViewPitchXUm = 737.0;
constexpr double kWideViewPitchYUm = 737.0 * 1028.0 / 1232.0;  // 614.96..., the picture's shape
constexpr double kWideViewReturnSpeed = 600.0;                 // um/s

// Where tile (column, row) of an n x n mosaic lies on the main window; one pixel wider
// and higher than a third so that neighbouring tiles overlap and hide the seams.
IntRect mosaicTileRect(int column, int row, int n);
// One 1232 x 1028 picture stretched into its tile on window.
void DrawMosaicTile(SurfaceWindow window, const uint8_t* pixels, int column, int row, int n);
// The whole run; always 1.
int WideView();
