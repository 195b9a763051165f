// The writing simulation: see writing_simulation.h.
#include "pattern/writing_simulation.h"

#include <algorithm>

#include "camera/Basler_camera.h"
#include "station/station.h"
#include "station/view_geometry.h"

void resamplePattern(const MaskPattern& source, MaskPattern& destination) {
  const float s = static_cast<float>(station.zoom * station.magnification);
  const int extent =
      std::clamp(static_cast<int>(static_cast<float>(kPatternSide) * s), 0, kPatternSide);
  cellGrid.zoomedWidth = extent;
  cellGrid.zoomedHeight = extent;
  for (int y = 0; y < destination.height; ++y) {
    for (int x = 0; x < destination.width; ++x) setCell(destination, x, y, kBrightCell);
  }
  if (s <= 1.0f) {
    const float o = -static_cast<float>(kPatternSide) * s / 2.0f + 500.0f;
    for (int y = 0; y < cellGrid.zoomedHeight; ++y) {
      for (int x = 0; x < cellGrid.zoomedWidth; ++x) {
        setCell(destination, static_cast<int>(static_cast<float>(x) + o),
                static_cast<int>(static_cast<float>(y) + o),
                getCell(source, static_cast<int>(static_cast<float>(x) / s),
                        static_cast<int>(static_cast<float>(y) / s)));
      }
    }
  } else {
    const int o = static_cast<int>(-static_cast<float>(kPatternSide) / s / 2.0f + 500.0f);
    for (int y = 0; y < kPatternSide; ++y) {
      for (int x = 0; x < kPatternSide; ++x) {
        setCell(destination, x, y,
                getCell(source, static_cast<int>(static_cast<float>(x) / s + static_cast<float>(o)),
                        static_cast<int>(static_cast<float>(y) / s + static_cast<float>(o))));
      }
    }
  }
}

void composeSimulation(const MaskPattern& zoomed, ImageBuffer picture) {
  const IntRect area = station.writingAreaRect;
  const IntRect camera = station.cameraRect;
  const double scale = station.cameraScale;
  // The rectangle tests of the display are strict on every side.
  auto inside = [](const IntRect& r, int x, int y) {
    return x > r.left && x < r.right && y > r.top && y < r.bottom;
  };
  // Rows are bottom-up: row r of a picture shows display row height - 1 - r, in the
  // composed picture as in the camera's.
  for (int row = 0; row < picture.height; ++row) {
    const int y = picture.height - 1 - row;
    for (int x = 0; x < picture.width; ++x) {
      uint8_t red = 255, green = 255, blue = 255;
      if (inside(area, x, y) && getCell(zoomed, x - area.left, area.bottom - y) == kDarkCell) {
        red = 0;
        green = 0;
      } else if (inside(camera, x, y)) {
        const int u = static_cast<int>((x - camera.left) / scale);
        const int v = static_cast<int>((y - camera.top) / scale);
        const int frameRow = displayFrame.height - 1 - v;
        red = getRed(displayFrame, u, frameRow);
        green = getGreen(displayFrame, u, frameRow);
        blue = getBlue(displayFrame, u, frameRow);
      }
      setRed(picture, x, row, red);
      setGreen(picture, x, row, green);
      setBlue(picture, x, row, blue);
    }
  }
}
