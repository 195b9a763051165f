// The display window's mouse: see display_pointer.h.
#include "app/display_pointer.h"

#include <cstdio>

#include "camera/display_surface.h"
#include "pattern/display_layers.h"
#include "pattern/line_editing.h"
#include "pattern/line_pattern.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/view_geometry.h"

namespace {

constexpr Rgb kSpotMarkRed = {255, 0, 0};
constexpr int kSpotMarkRadius = 2;

int wheelBusy = 0;  // a wheel turn that arrives while a zoom redraws is dropped

void drawSpotMark(int x, int y) {
  Canvas* canvas = canvasOnWindow(SurfaceWindow::Main);
  canvasEllipse(
      canvas, {x - kSpotMarkRadius, y - kSpotMarkRadius, x + kSpotMarkRadius, y + kSpotMarkRadius},
      kSpotMarkRed);
  canvasFree(canvas);
}

}  // namespace

void onDisplayLeftButtonDown(int x, int y) {
  // With the laser on a click must not draw: the operator is looking at the spot.
  if (laser.laserOn != 0 || operationRunning()) return;
  leftClick({x, y});
}

void onDisplayRightButtonDown(int x, int y) {
  if (operationRunning()) return;
  if (laser.laserOn != 0) {
    setLaserSpotAt(x, y);
    return;
  }
  rightClick();
}

DisplayCursor onDisplayMouseMove(int x, int y) {
  if (laser.laserOn != 0) return DisplayCursor::Arrow;
  if (linePattern.drawing) {
    if (!operationRunning()) pointerMove({x, y});
    return DisplayCursor::Hand;
  }
  return linePattern.erasing == 1 ? DisplayCursor::Cross : DisplayCursor::Arrow;
}

void onDisplayWheel(int delta) {
  if (wheelBusy != 0 || operationRunning()) return;
  wheelBusy = 1;
  changeZoom(delta < 1 ? -1 : 1);
  wheelBusy = 0;
}

void setLaserSpotAt(int x, int y) {
  const int yUp = kDisplayHeight - y;
  if (x < 0 || x > kDisplayWidth || yUp < 0 || yUp > kDisplayHeight) return;
  drawSpotMark(x, y);
  char title[64];
  std::snprintf(title, sizeof title, "Position: (%d,%d)", x, yUp);
  if (feedbackMessageBox("Do you want to set the laser beam spot here?", title,
                         MessageKind::YesNo) == Answer::Yes) {
    laser.laserShiftX = x;
    laser.laserShiftY = yUp;
  }
}
