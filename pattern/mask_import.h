// Mask and alignment-mark import: a picture file drawn into the writing area and kept as
// maskImage or alignmentMarkImage, the mask rendered at double resolution and thresholded,
// and the target pattern built as the union of the pictures' dark pixels. The darkness
// rule and the counting are here; the file loading is the picture seam (picture_render.h),
// the screen the display seam. Called by the pattern commands and the writing run.
#pragma once

#include <cstdint>
#include <string>

#include "pattern/pattern_stores.h"

// A pixel is dark when red + green + blue < 128.
constexpr int kDarkSumLimit = 128;
constexpr int kMaskRenderStep = 2;                               // samples per cell, each way
constexpr int kMaskRenderSide = kMaskRenderStep * kPatternSide;  // 2000

inline bool isDark(int red, int green, int blue) { return red + green + blue < kDarkSumLimit; }

// The picture paths the operator picked in the file dialog; empty until then.
extern std::wstring maskPicturePath;
extern std::wstring alignmentMarkPicturePath;

// Wipes the writing area white, draws the picture (none: nothing) stretched over it and
// captures it into image's pixels (w x h, bottom-up), as it shows on the display, where
// row y lies at the area's bottom - y. 0.
int importPictureToImage(const std::wstring* path, ImageBuffer image);
// Renders the picture at 2000 x 2000, thresholds the top-left sample of each 2 x 2 block
// into image (dark 0, 0, 0; bright 255, 255, 255), counts the dark cells into the total
// and clears the written count; with show set, puts the render over the writing area. 0.
int renderMaskPattern(bool show, const std::wstring& path, ImageBuffer image);
// The thresholding of a 2000 x 2000 render (bottom-up, 4 bytes a pixel) into image;
// returns the number of dark cells.
int thresholdMaskRender(const uint8_t* render, ImageBuffer image);
// Cell := 0 where a valid picture is dark, else 1; the total is the dark count and the
// written count is cleared. 0.
int buildTargetPattern(const ImageBuffer& mask, const ImageBuffer& alignment, MaskPattern& pattern);
