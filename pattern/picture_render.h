// The picture-file seam of mask import: a picture file drawn stretched over a white
// canvas of a given size, read back as 32-bit bottom-up pixels. Windows
// (picture_render_win32.cpp): GDI+ loads the file and draws it into a memory bitmap.
// Tests: sim/recorded_display_seam.cpp draws pictures the test registered by path.
#pragma once

#include <cstdint>
#include <string>

// Fills pixels (width x height x 4 bytes, bytes blue, green, red, reserved, rows
// bottom-up) with white, then draws the picture at path stretched over all of it,
// transparent parts showing the white. False when the file could not be loaded; the
// pixels are then all white.
bool renderPictureFile(const std::wstring& path, int width, int height, uint8_t* pixels);
