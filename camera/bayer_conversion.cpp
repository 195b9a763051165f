// Raw sensor frames to the display picture, and the test pattern that stands in for a
// frame. Each 2 x 2 BayerRG8 cell (red top-left, greens top-right and bottom-left, blue
// bottom-right) becomes one 32-bit pixel; the target's row pitch is two sensor rows'
// worth of bytes, so raw row pair y lands in target row (sensorHeight - y - 2) / 2 and
// the picture comes out bottom-up. The reserved fourth byte is never written.
#include <algorithm>
#include <cstring>

// SSE2 is part of every x86-64 processor; other processors take the plain loop.
#if defined(__SSE2__) || defined(_M_X64)
#define TELVANE_SSE2 1
#include <emmintrin.h>
#else
#define TELVANE_SSE2 0
#endif

#include "camera/Basler_camera.h"
#include "station/station.h"

namespace {

struct CellBytes {
  uint16_t red, greenA, greenB, blue;
};

inline CellBytes readCell(const uint8_t* raw, int32_t source, int32_t width, bool blueAlone) {
  CellBytes cell{0, 0, 0, raw[source + width + 1]};
  if (!blueAlone) {
    cell.greenA = raw[source + width];
    cell.greenB = raw[source + 1];
    cell.red = raw[source];
  }
  return cell;
}

// One row pair into one display row, four bytes at a time: the reserved byte is read and
// put back unchanged.
void convertRowTail(const uint8_t* top, const uint8_t* bottom, uint8_t* out, int32_t first,
                    int32_t pixels, bool blueAlone) {
  const uint32_t keepGreenRed = blueAlone ? 0u : 0xFFFFFFFFu;
  for (int32_t p = first; p < pixels; ++p) {
    uint16_t topPair, bottomPair;
    uint32_t pixel;
    std::memcpy(&topPair, top + 2 * p, 2);
    std::memcpy(&bottomPair, bottom + 2 * p, 2);
    std::memcpy(&pixel, out + 4 * p, 4);
    // Little-endian pairs: the low byte is the left sample.
    const uint32_t red = topPair & 0xFFu;
    const uint32_t greenB = topPair >> 8;
    const uint32_t greenA = bottomPair & 0xFFu;
    const uint32_t blue = bottomPair >> 8;
    const uint32_t colour = (((greenA + greenB) >> 1) << 8 | red << 16) & keepGreenRed;
    pixel = (pixel & 0xFF000000u) | colour | blue;
    std::memcpy(out + 4 * p, &pixel, 4);
  }
}

#if TELVANE_SSE2
// Eight pixels a step in 16-bit lanes: the live view converts five frames a second on the
// user-interface thread, so this keeps the conversion near the speed of a plain copy.
void convertRow(const uint8_t* top, const uint8_t* bottom, uint8_t* out, int32_t pixels,
                bool blueAlone) {
  const __m128i lowBytes = _mm_set1_epi16(0x00FF);
  const __m128i keepGreenRed = blueAlone ? _mm_setzero_si128() : _mm_set1_epi16(-1);
  const __m128i reservedByte = _mm_set1_epi32(static_cast<int>(0xFF000000u));
  int32_t p = 0;
  for (; p + 8 <= pixels; p += 8) {
    const __m128i topPairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(top + 2 * p));
    const __m128i bottomPairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bottom + 2 * p));
    const __m128i red = _mm_and_si128(_mm_and_si128(topPairs, lowBytes), keepGreenRed);
    const __m128i greenB = _mm_srli_epi16(topPairs, 8);
    const __m128i greenA = _mm_and_si128(bottomPairs, lowBytes);
    const __m128i blue = _mm_srli_epi16(bottomPairs, 8);
    const __m128i green =
        _mm_and_si128(_mm_srli_epi16(_mm_add_epi16(greenA, greenB), 1), keepGreenRed);
    const __m128i blueGreen = _mm_or_si128(blue, _mm_slli_epi16(green, 8));
    __m128i* target = reinterpret_cast<__m128i*>(out + 4 * p);
    const __m128i firstFour = _mm_unpacklo_epi16(blueGreen, red);
    const __m128i lastFour = _mm_unpackhi_epi16(blueGreen, red);
    _mm_storeu_si128(target,
                     _mm_or_si128(firstFour, _mm_and_si128(_mm_loadu_si128(target), reservedByte)));
    _mm_storeu_si128(target + 1, _mm_or_si128(lastFour, _mm_and_si128(_mm_loadu_si128(target + 1),
                                                                      reservedByte)));
  }
  convertRowTail(top, bottom, out, p, pixels, blueAlone);
}
#else
void convertRow(const uint8_t* top, const uint8_t* bottom, uint8_t* out, int32_t pixels,
                bool blueAlone) {
  convertRowTail(top, bottom, out, 0, pixels, blueAlone);
}
#endif

inline void writePixel(uint8_t* target, int32_t index, const CellBytes& cell) {
  target[index + 2] = static_cast<uint8_t>(cell.red);
  target[index + 1] = static_cast<uint8_t>((cell.greenA + cell.greenB) >> 1);
  target[index] = static_cast<uint8_t>(cell.blue);
}

}  // namespace

void ConvertBayerToDisplay(CameraDevice& device, const uint8_t* raw, uint8_t* target) {
  const int32_t width = device.sensorWidth;
  const int32_t height = device.sensorHeight;
  const int32_t frameBytes = static_cast<int32_t>(device.frameBytes);
  // The source clamp keeps a whole row pair in reach, so it binds on the last row pair,
  // which then repeats one cell; the target clamp never binds for a full-size sensor.
  const int32_t sourceMax = frameBytes - 2 * width - 1;
  const bool blueAlone = blueOnly != 0;
  CellBytes cell{};
  int32_t source = 0;
  int32_t targetIndex = 0;
  for (int32_t y = 0; y < height; y += 2) {
    const int32_t rowStart = y * width;
    const int32_t targetRow = (height - y - 2) * width;
    const bool rowInside = rowStart >= 0 && rowStart + width - 2 <= sourceMax && targetRow >= 0 &&
                           targetRow + 2 * (width - 2) <= frameBytes;
    if (rowInside) {
      // The clamps cannot bind anywhere in this row: the plain loop.
      convertRow(raw + rowStart, raw + rowStart + width, target + targetRow, width / 2, blueAlone);
      source = rowStart + width - 2;
      targetIndex = targetRow + 2 * (width - 2);
      cell = readCell(raw, source, width, blueAlone);
      continue;
    }
    for (int32_t x = 0; x < width; x += 2) {
      source = std::clamp(y * width + x, 0, sourceMax);
      cell = readCell(raw, source, width, blueAlone);
      targetIndex = std::clamp((height - y - 2) * width + 2 * x, 0, frameBytes);
      writePixel(target, targetIndex, cell);
    }
  }
  device.red = cell.red;
  device.greenA = cell.greenA;
  device.greenB = cell.greenB;
  device.blue = cell.blue;
  device.sourceIndex = source;
  device.targetIndex = targetIndex;
}

// Slanted bands indexed with the sensor's width over the display bytes, so they move by
// one byte per failed grab; both terms wrap at 100 while the laser is on, else at 255.
void FillTestPattern(CameraDevice& device, uint8_t* target) {
  const int modulus = laser.laserOn != 0 ? 100 : 255;
  const uint32_t width = static_cast<uint32_t>(device.sensorWidth);
  for (uint32_t rowStart = 0, y = 0; rowStart < device.frameBytes; rowStart += width, ++y) {
    const int rowTerm = static_cast<int>((y / 2) % modulus);
    const uint32_t count = std::min(width, device.frameBytes - rowStart);
    uint8_t* row = target + rowStart;
    for (uint32_t x = 0; x < count; ++x) {
      const int columnTerm = static_cast<int>(((x + grabFailureCount) / 10) % modulus);
      row[x] = static_cast<uint8_t>(rowTerm + columnTerm);
    }
  }
}
