// Control of the recorded display that the tests link in place of GDI: every drawing
// call is kept as one line of text, what the windows show is kept pixel by pixel, saved
// files hold the PNG signature, and failures of a kind can be queued.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camera/display_surface.h"

void recordedDisplayReset();
// Every call since the reset, e.g. "rect 950,950,1050,955 pen 000000 fill ffff00".
const std::vector<std::string>& recordedDisplayCalls();
// The next count calls of the named step fail: "bitmap", "context", "pixels", "blit",
// "stretch", "copy".
void recordedDisplayFail(const std::string& step, int count);
// The file the next file-open question returns; none queued: the operator cancels.
void recordedQueueFileChoice(const std::wstring& path);

// What drawing straight onto a window costs the program on its host, in microseconds: a
// device context taken and given back, and one pixel set. Zero after a reset; the
// forecast sets what the operator's PC measured, and the virtual clock advances by it.
void recordedDisplaySetDrawingCost(double windowDcUs, double pixelUs);

// A picture file as the picture seam reads it: width x height pixels, rows bottom-up,
// 4 bytes each (blue, green, red, alpha; alpha 0 is transparent).
struct RecordedPicture {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;
};
// The picture a path holds from now on; other paths load only as 24-bit BMP files.
void recordedRegisterPicture(const std::wstring& path, const RecordedPicture& picture);
// What the operator sees at client pixel (x, y) of the main window, where the display
// window covers (0, 0) - (1232, 1028): pictures copied or stretched onto either window,
// rectangles and pixels drawn on them (lines, ellipses and texts are not drawn). Black
// where nothing was drawn since the reset.
Rgb recordedScreenPixel(int x, int y);
// The same for a client pixel of window; false where nothing was drawn since the reset.
bool recordedDirectPixel(SurfaceWindow window, int x, int y, Rgb& colour);
