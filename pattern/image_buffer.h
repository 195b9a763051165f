// The 32-bit picture record shared by the camera and the pattern stores: a fixed heap
// block of the whole display (1232 x 1028 x 4 bytes, rows bottom-up, bytes blue, green,
// red, reserved) with the width and height its users address it by. It owns the block
// for the whole run and never frees it; drawing into it belongs to its users.
#pragma once

#include <cstdint>

constexpr int32_t kImageBufferBytes = 1232 * 1028 * 4;  // 5,065,984

struct ImageBuffer {
  ImageBuffer();
  ImageBuffer(int32_t usedWidth, int32_t usedHeight);  // a picture of the whole display

  int32_t valid = 1;  // takes part in pattern building while non-zero
  uint8_t* pixels = nullptr;
  int32_t width = 1000;  // pixels per row as the accessors address them
  int32_t height = 1000;
  int32_t byteSize = kImageBufferBytes;  // capacity, whatever width and height say
};
