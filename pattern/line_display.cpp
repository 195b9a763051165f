// The line mappings and drawing: see line_display.h.
#include "pattern/line_display.h"

#include <algorithm>
#include <cstdint>

namespace {

int wholeMicrometres16(float um) { return static_cast<int16_t>(truncatedToInt(um)); }

}  // namespace

float pixelToMicrometresX(int x) {
  return static_cast<float>(static_cast<float>(x - station.displayCenterX) / station.zoom);
}

float pixelToMicrometresY(int y) {
  return static_cast<float>(static_cast<float>(y - station.displayCenterY) / station.zoom);
}

IntPoint drawingPixel(float xUm, float yUm) {
  return {truncatedToInt(wholeMicrometres16(xUm) * station.zoom + station.displayCenterX),
          truncatedToInt(wholeMicrometres16(yUm) * station.zoom + station.displayCenterY)};
}

IntPoint hitTestPixel(float xUm, float yUm) {
  // Far off the display either way; the limit keeps the eraser's products in 64 bits.
  constexpr double kFarPixels = 1e9;
  return {truncatedToInt(
              std::clamp(xUm * station.zoom + station.displayCenterX, -kFarPixels, kFarPixels)),
          truncatedToInt(
              std::clamp(yUm * station.zoom + station.displayCenterY, -kFarPixels, kFarPixels))};
}

int penWidthPixels(int widthClass) { return truncatedToInt(widthClass * station.zoom); }

void drawSegment(SurfaceWindow window, const LineSegment& segment, Rgb colour) {
  Canvas* canvas = canvasOnWindow(window);
  canvasLine(canvas, drawingPixel(segment.x1, segment.y1), drawingPixel(segment.x2, segment.y2),
             penWidthPixels(segment.width), colour);
  canvasFree(canvas);
}

void drawLines(SurfaceWindow window) {
  if (linePattern.segments.empty()) return;
  Canvas* canvas = canvasOnWindow(window);
  for (const LineSegment& segment : linePattern.segments) {
    canvasLine(canvas, drawingPixel(segment.x1, segment.y1), drawingPixel(segment.x2, segment.y2),
               penWidthPixels(segment.width), kLineColour);
  }
  canvasFree(canvas);
}
