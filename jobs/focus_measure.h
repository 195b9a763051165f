// The sharpness of a camera frame, as coarse focusing and the focus-measure display use
// it: the frame binned 4 x 4 into three colour planes, and on each plane the mean
// second difference at offset k where the picture has contrast. The planes are fixed
// stores, rebuilt from the newest frame at every measurement.
#pragma once

#include "pattern/image_buffer.h"

constexpr int kBinnedWidth = 308;   // 1232 / 4
constexpr int kBinnedHeight = 257;  // 1028 / 4
constexpr int kFocusOffset = 5;     // k, in binned positions
// A plane with fewer contrast positions than this has no usable sharpness.
constexpr int kFocusMinPositions = 11;
constexpr double kFlatSharpness = 0.0001;

// One colour plane, value [j][i] = the mean of frame pixels x 4i..4i+3, y 4j..4j+3.
using BinnedPlane = float[kBinnedHeight][kBinnedWidth];

extern BinnedPlane binnedRed;
extern BinnedPlane binnedGreen;
extern BinnedPlane binnedBlue;

// The three planes from a 1232 x 1028 frame (bytes blue, green, red, reserved).
void buildBinnedPlanes(const ImageBuffer& frame);
// Where |c - u| or |c - d| exceeds 2 (u, d: k before and after along i), the sum of
// |2c - u - d| + |2c - l - r| (l, r: along j) over the count of such positions, / 100;
// kFlatSharpness when fewer than kFocusMinPositions positions count.
double planeSharpness(const BinnedPlane& plane, int k);
// The mean of the three planes' sharpness, shown with "%.3f" in the status box.
float frameSharpness(const ImageBuffer& frame);
