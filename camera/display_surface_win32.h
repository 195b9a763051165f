// Windows-only pieces of the display-drawing seam that the shell and the Windows tests
// reach directly: the display window's back buffer, the GDI+ encoder lookup and what
// drawing on a window costs.
#pragma once

#include <windows.h>

#include "camera/display_surface.h"

// Index of the first installed GDI+ encoder whose MIME type equals mimeType, its class
// id copied into clsid; -1 when the encoder list cannot be had; 0 also when none matches
// (clsid then unchanged).
int FindEncoder(const wchar_t* mimeType, CLSID& clsid);

// The header of every picture transfer: width x height, 32 bits a pixel, rows bottom-up.
BITMAPINFO headerFor(int width, int height);

// Copies the display window's back buffer (the last picture drawn there) into dc.
void paintDisplayBackBuffer(HDC dc);

// What marking a written cell straight onto window costs here, as the writing engines do
// it: microseconds for a canvas on the window taken and freed, and for each pixel set on
// it. Measured on strokes along the display's top rows, each pixel set to the colour it
// already has, so the picture does not change.
struct DrawingCost {
  double windowDcUs = 0;
  double pixelUs = 0;
};
DrawingCost measureDrawingCost(SurfaceWindow window);
