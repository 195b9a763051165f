// The display-drawing seam: off-screen canvases (a screen-compatible bitmap and a memory
// drawing context), 32-bit bottom-up pictures put into them, the few shapes and texts the
// overlays need, and the copies onto the main window or the display window. The retry
// rules and what is drawn where belong to the callers (live_render.cpp, wide_view.cpp,
// picture_files.cpp). Windows: display_surface_win32.cpp (GDI; the display window keeps
// a back buffer that its paint handler shows). Tests: sim/recorded_display_seam.cpp logs
// every call and keeps what the windows show, pixel by pixel.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "station/station.h"

enum class SurfaceWindow { Main, Display };

struct Rgb {
  uint8_t red, green, blue;
};

struct Canvas;  // owned by the implementation

// A canvas for pictures that will go onto window; nothing is created yet.
Canvas* canvasNew(SurfaceWindow window);
// A canvas whose drawing goes straight onto the window (no bitmap of its own).
Canvas* canvasOnWindow(SurfaceWindow window);
// The bitmap of width x height compatible with the window; false when it cannot be made.
bool canvasCreateBitmap(Canvas* canvas, int width, int height);
// The memory drawing context; false when it cannot be made.
bool canvasCreateContext(Canvas* canvas);
// A 32-bit bottom-up picture of the bitmap's size into the bitmap (SetDIBits).
bool canvasSetPixels(Canvas* canvas, const uint8_t* pixels, int width, int height);
void canvasSelectBitmap(Canvas* canvas);
void canvasRestoreSelection(Canvas* canvas);

// Drawing into the selected bitmap.
void canvasRectangle(Canvas* canvas, const IntRect& rect, Rgb pen, const Rgb* fill);
void canvasEllipse(Canvas* canvas, const IntRect& rect, Rgb pen);
// Text with a transparent background in the given colour; plain (default colours and
// background) when colour is null.
void canvasText(Canvas* canvas, int x, int y, const std::string& text, const Rgb* colour);
void canvasSetPixel(Canvas* canvas, int x, int y, Rgb colour);
// A straight line with a solid pen penWidth pixels wide; the end pixel is left out, as a
// GDI line leaves it.
void canvasLine(Canvas* canvas, IntPoint from, IntPoint to, int penWidth, Rgb colour);
// The same line, 1 pixel wide, drawn by inverting the pixels under it: drawing it a second
// time restores the picture (the rubber band of line editing).
void canvasInvertLine(Canvas* canvas, IntPoint from, IntPoint to);

// Copies onto the window the canvas was made for.
bool canvasBlit(Canvas* canvas, int x, int y);
// Stretches the whole bitmap into rect with halftone stretching.
bool canvasStretch(Canvas* canvas, const IntRect& rect);
// The window's top-left width x height pixels into the bitmap.
bool canvasCopyFromWindow(Canvas* canvas);
// The bitmap as a PNG file (through the image library's encoder for "image/png").
bool canvasSavePng(Canvas* canvas, const std::filesystem::path& file);

void canvasDeleteBitmap(Canvas* canvas);
void canvasFree(Canvas* canvas);  // deletes what is left and the canvas itself
