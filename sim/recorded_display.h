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
