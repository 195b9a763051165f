// The frame sharpness: see focus_measure.h.
#include "jobs/focus_measure.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "station/feedback.h"

BinnedPlane binnedRed;
BinnedPlane binnedGreen;
BinnedPlane binnedBlue;

namespace {

constexpr int kFrameWidth = 1232;
constexpr int kFrameHeight = 1028;
constexpr int kRowBytes = kFrameWidth * 4;
constexpr int kBin = 4;
constexpr double kContrastThreshold = 2.0;

// Byte index of pixel (x, y), coordinates clamped into the frame and the index to the
// last pixel of the buffer.
int32_t pixelIndex(const ImageBuffer& frame, int x, int y) {
  x = std::clamp(x, 0, kFrameWidth - 1);
  y = std::clamp(y, 0, kFrameHeight - 1);
  return std::min(y * kRowBytes + x * 4, frame.byteSize - 4);
}

}  // namespace

void buildBinnedPlanes(const ImageBuffer& frame) {
  for (int j = 0; j < kBinnedHeight; ++j) {
    for (int i = 0; i < kBinnedWidth; ++i) {
      int blue = 0, green = 0, red = 0;
      for (int y = kBin * j; y < kBin * j + kBin; ++y) {
        for (int x = kBin * i; x < kBin * i + kBin; ++x) {
          const uint8_t* pixel = frame.pixels + pixelIndex(frame, x, y);
          blue += pixel[0];
          green += pixel[1];
          red += pixel[2];
        }
      }
      binnedBlue[j][i] = static_cast<float>(blue / 4.0 / 4.0);
      binnedGreen[j][i] = static_cast<float>(green / 4.0 / 4.0);
      binnedRed[j][i] = static_cast<float>(red / 4.0 / 4.0);
    }
  }
}

double planeSharpness(const BinnedPlane& plane, int k) {
  double sum = 0.0;
  int count = 0;
  for (int j = k; j < kBinnedHeight - k; ++j) {
    for (int i = k; i < kBinnedWidth - k; ++i) {
      const double c = plane[j][i];
      const double u = plane[j][i - k], d = plane[j][i + k];
      const double l = plane[j - k][i], r = plane[j + k][i];
      if (std::fabs(c - u) > kContrastThreshold || std::fabs(c - d) > kContrastThreshold) {
        sum += std::fabs(2 * c - u - d) + std::fabs(2 * c - l - r);
        ++count;
      }
    }
  }
  if (count < kFocusMinPositions) return kFlatSharpness;
  return sum / count / 100.0;
}

float frameSharpness(const ImageBuffer& frame) {
  buildBinnedPlanes(frame);
  const float sharpness = static_cast<float>((planeSharpness(binnedRed, kFocusOffset) +
                                              planeSharpness(binnedGreen, kFocusOffset) +
                                              planeSharpness(binnedBlue, kFocusOffset)) /
                                             3);
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", sharpness);
  feedbackSetBoxText(Box::Status, text);
  return sharpness;
}
