// Mask import: see mask_import.h. totalCells and doneCells of the pattern Parts are the
// station's cellCount (the progress denominator) and doneCells.
#include "pattern/mask_import.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "camera/display_surface.h"
#include "pattern/picture_render.h"
#include "station/station.h"

std::wstring maskPicturePath;
std::wstring alignmentMarkPicturePath;

namespace {

const Rgb kWhite{255, 255, 255};
constexpr int kWipeMarginPx = 3;
constexpr size_t kLastRenderPixelByte =
    static_cast<size_t>(kMaskRenderSide) * kMaskRenderSide * 4 - 4;

// A picture of width x height onto the display window with its top-left at (x, y).
void showOnDisplay(const uint8_t* pixels, int width, int height, int x, int y) {
  Canvas* canvas = canvasNew(SurfaceWindow::Display);
  if (canvasCreateBitmap(canvas, width, height) && canvasCreateContext(canvas) &&
      canvasSetPixels(canvas, pixels, width, height)) {
    canvasSelectBitmap(canvas);
    canvasBlit(canvas, x, y);
    canvasRestoreSelection(canvas);
  }
  canvasFree(canvas);
}

// A picture of the writing area is shown with row y of its 1000 bottom-up rows at display
// row bottom - y, where every grid is painted and written cells are marked: its top row
// lies one below the area's top edge.
constexpr int kPictureDropPx = 1;

void paintWhite(const IntRect& rect) {
  Canvas* window = canvasOnWindow(SurfaceWindow::Display);
  canvasRectangle(window, rect, kWhite, &kWhite);
  canvasFree(window);
}

}  // namespace

int importPictureToImage(const std::wstring* path, ImageBuffer image) {
  const IntRect area = station.writingAreaRect;
  int w = area.right - area.left;
  int h = area.bottom - area.top;
  paintWhite({area.left - kWipeMarginPx, area.top - kWipeMarginPx, area.right + kWipeMarginPx,
              area.bottom + kWipeMarginPx});
  w = std::clamp(w, 0, kDisplayWidth);
  h = std::clamp(h, 0, kDisplayHeight);
  const int left = std::clamp(area.left, 0, kDisplayWidth / 2);
  const int top = std::clamp(area.top, 0, kDisplayHeight / 2);
  if (w == 0 || h == 0 || image.pixels == nullptr) return 0;
  // What the window shows after the drawing is the picture stretched over white: render
  // it so and capture that, the same bytes a copy back from the window would give.
  if (path != nullptr) {
    renderPictureFile(*path, w, h, image.pixels);
  } else {
    std::memset(image.pixels, 0xFF, static_cast<size_t>(w) * static_cast<size_t>(h) * 4);
  }
  showOnDisplay(image.pixels, w, h, left, top + kPictureDropPx);
  return 0;
}

int thresholdMaskRender(const uint8_t* render, ImageBuffer image) {
  int dark = 0;
  for (int x = 0; x < kMaskRenderSide; x += kMaskRenderStep) {
    for (int y = 0; y < kMaskRenderSide; y += kMaskRenderStep) {
      const size_t at = std::min(
          (static_cast<size_t>(kMaskRenderSide) * static_cast<size_t>(y) + static_cast<size_t>(x)) *
              4,
          kLastRenderPixelByte);
      const uint8_t value = isDark(render[at + 2], render[at + 1], render[at]) ? 0 : 255;
      if (value == 0) ++dark;
      setRed(image, x / kMaskRenderStep, y / kMaskRenderStep, value);
      setGreen(image, x / kMaskRenderStep, y / kMaskRenderStep, value);
      setBlue(image, x / kMaskRenderStep, y / kMaskRenderStep, value);
    }
  }
  return dark;
}

int renderMaskPattern(bool show, const std::wstring& path, ImageBuffer image) {
  // The one block taken for a call and given back at its end (16,000,000 bytes).
  std::vector<uint8_t> render(static_cast<size_t>(kMaskRenderSide) * kMaskRenderSide * 4);
  renderPictureFile(path, kMaskRenderSide, kMaskRenderSide, render.data());
  station.cellCount = 0;
  station.doneCells = 0;
  if (image.pixels != nullptr) station.cellCount = thresholdMaskRender(render.data(), image);
  if (show) {
    paintWhite(station.displayRect);
    Canvas* canvas = canvasNew(SurfaceWindow::Display);
    if (canvasCreateBitmap(canvas, kMaskRenderSide, kMaskRenderSide) &&
        canvasCreateContext(canvas) &&
        canvasSetPixels(canvas, render.data(), kMaskRenderSide, kMaskRenderSide)) {
      canvasSelectBitmap(canvas);
      const IntRect area = station.writingAreaRect;
      canvasStretch(
          canvas, {area.left, area.top + kPictureDropPx, area.right, area.bottom + kPictureDropPx});
      canvasRestoreSelection(canvas);
    }
    canvasFree(canvas);
  }
  return 0;
}

int buildTargetPattern(const ImageBuffer& mask, const ImageBuffer& alignment,
                       MaskPattern& pattern) {
  station.cellCount = 0;
  station.doneCells = 0;
  const bool useMask = mask.valid != 0 && mask.pixels != nullptr;
  const bool useMark = alignment.valid != 0 && alignment.pixels != nullptr;
  int dark = 0;
  // Every (x, y) lies inside both pictures' 1000 x 1000, so no clamping is needed; each
  // cell depends on its own pixels only, so rows can go outer.
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; ++x) {
      const size_t at = (static_cast<size_t>(y) * kPatternSide + static_cast<size_t>(x)) * 4;
      const uint8_t* m = mask.pixels + at;
      const uint8_t* a = alignment.pixels + at;
      const bool isDarkCell =
          (useMask && isDark(m[2], m[1], m[0])) || (useMark && isDark(a[2], a[1], a[0]));
      pattern.cells[static_cast<size_t>(y) * kPatternSide + static_cast<size_t>(x)] =
          isDarkCell ? kDarkCell : kBrightCell;
      if (isDarkCell) ++dark;
    }
  }
  station.cellCount = dark;
  return 0;
}
