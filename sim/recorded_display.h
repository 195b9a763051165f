// Control of the recorded display that the tests link in place of GDI: every drawing
// call is kept as one line of text, the last picture copied onto each window is kept,
// saved files hold the PNG signature, and failures of a kind can be queued.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "camera/display_surface.h"

void recordedDisplayReset();
// Every call since the reset, e.g. "rect 950,950,1050,955 pen 000000 fill ffff00".
const std::vector<std::string>& recordedDisplayCalls();
// The picture last copied onto window at (0, 0) or stretched there, as 32-bit pixels of
// the bitmap that was copied (width x height, bottom-up).
const std::vector<uint8_t>& recordedWindowPicture(SurfaceWindow window);
// The next count calls of the named step fail: "bitmap", "context", "pixels", "blit",
// "stretch", "copy".
void recordedDisplayFail(const std::string& step, int count);
// The file the next file-open question returns; none queued: the operator cancels.
void recordedQueueFileChoice(const std::wstring& path);

// A picture file as the picture seam reads it: width x height pixels, rows bottom-up,
// 4 bytes each (blue, green, red, alpha; alpha 0 is transparent).
struct RecordedPicture {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;
};
// The picture a path holds from now on; unregistered paths do not load.
void recordedRegisterPicture(const std::wstring& path, const RecordedPicture& picture);
// The colour last drawn straight onto the window at client pixel (x, y); false if none.
bool recordedDirectPixel(SurfaceWindow window, int x, int y, Rgb& colour);
void recordedForgetDirectPixels();
