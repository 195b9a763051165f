// Putting pictures on the screen: the live camera picture with its overlays on the
// display window, the "Camera Capture" snapshot on the main window (optionally saved),
// a black-and-white view of a pattern raster, and the overlays themselves. It owns the
// live canvas (made once, reused for every frame) and the snapshot number; it owns no
// picture data. Saving files belongs to picture_files.cpp, the timer to live_view.cpp.
#pragma once

#include <cstdint>

#include "camera/display_surface.h"
#include "pattern/image_buffer.h"

// The scale bar for a display scale in pixels per micrometre: the longest whole number
// of micrometres that fits in 100 pixels, and its length in pixels.
struct ScaleBar {
  int lengthUm;
  int widthPx;
};
ScaleBar scaleBarFor(double pixelsPerUm);

// The scale bar at (950, 950) with its outlined label "%d um" (micrometres x multiplier).
void drawScaleBar(Canvas* canvas, int multiplier);

// 1 when drawn (or given up after the bitmap failures), 0 when the memory context or the
// picture transfer kept failing.
int RenderLive(SurfaceWindow window, const ImageBuffer& picture);
// Draws pixels on the main window, numbered; saved as "camera(%d).jpg" when save is set.
int RenderSnapshot(const uint8_t* pixels, int width, int height, int save);
// Cells (non-zero white, zero black) drawn pixel by pixel, upside down.
int RenderPatternView(SurfaceWindow window, const int32_t* cells, int width, int height);

// Clears the live renderer's failure count (the live view does so when it starts).
void resetLiveRenderErrors();

extern int snapshotNumber;  // the number drawn on the next snapshot
