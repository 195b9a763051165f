// The geometry recompute. Every double-to-int conversion truncates
// toward zero, and integer halves truncate too: the drawing code relies on these exact
// pixel values. The magnification comes from Config.txt as it stands, so the rectangles it
// scales stay at the int range's ends rather than overflow.
#include "station/view_geometry.h"

#include <cmath>
#include <cstdlib>

#include "station/truncation.h"

StationParameters::StationParameters() {
  recomputeViewGeometry(*this);
  // Until the first zoom change or camera frame, the writing area and the camera field
  // both cover the whole display; the live view and the overlays start from that.
  writingAreaRect = displayRect;
  cameraRect = {0, 0, kDisplayWidth, kDisplayHeight};
}

int recomputeViewGeometry(StationParameters& p) {
  const double lowZoom = std::pow(kZoomOutFactor, p.magnification + 1.0);
  const double highZoom = std::pow(kZoomInFactor, kZoomInSteps);
  if (lowZoom > p.zoom) {
    p.zoom = lowZoom;
  } else if (p.zoom > highZoom) {
    p.zoom = highZoom;
  }

  const int W = p.displaySize.width;
  const int H = p.displaySize.height;
  const int w = p.writingAreaSize.width;
  const int h = p.writingAreaSize.height;
  p.writingAreaRect = {(W - w) / 2, (H - h) / 2, (W + w) / 2, (H + h) / 2};

  const double scaledW = w * p.zoom * p.magnification;
  const double scaledH = h * p.zoom * p.magnification;
  p.scaledAreaRect = {truncatedToInt((W - scaledW) / 2.0), truncatedToInt((H - scaledH) / 2.0),
                      truncatedToInt((W + scaledW) / 2.0), truncatedToInt((H + scaledH) / 2.0)};

  p.cameraScale = p.zoom * kCameraFieldUm / kDisplayWidth;
  const double k = p.cameraScale;
  p.cameraRect = {truncatedToInt((W - W * k) / 2), truncatedToInt((H - H * k) / 2),
                  truncatedToInt((W + W * k) / 2), truncatedToInt((H + H * k) / 2)};

  const double pitchPixels = p.cellPitchUm * kDisplayWidth / kCameraFieldUm;
  p.cellPixels = static_cast<int>(pitchPixels > 1.0 ? pitchPixels : 1.0);
  p.cellsX = std::abs(p.targetBoxTopLeft.x - p.targetBoxBottomRight.x) / p.cellPixels + 1;
  p.cellsY = std::abs(p.targetBoxTopLeft.y - p.targetBoxBottomRight.y) / p.cellPixels + 1;
  p.targetWidthUm = static_cast<float>(static_cast<double>(static_cast<float>(p.cellsX)) *
                                       kCameraFieldUm / kDisplayWidth);
  p.targetHeightUm = static_cast<float>(static_cast<double>(static_cast<float>(p.cellsY)) *
                                        kCameraFieldUm / kDisplayWidth);
  p.cellCount = p.cellsX * p.cellsY;

  const int longest = p.cellsX > p.cellsY ? p.cellsX : p.cellsY;
  p.previewScale = p.previewMax / longest;
  // Only the width decides whether the preview is shown at one pixel per cell.
  if (p.cellsX >= p.previewMax) {
    p.previewWidth = p.cellsX;
    p.previewHeight = p.cellsY;
  } else {
    p.previewWidth = p.previewMax * p.cellsX / longest;
    p.previewHeight = p.previewMax * p.cellsY / longest;
  }

  p.progressSteps = p.cellCount / 500 + 2;
  return p.progressSteps;
}
