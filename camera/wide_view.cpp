// The wide view run: a serpentine over the nine cells (left to right, back, left to right),
// waiting 200 ms after the moves of the rows taken left to right, one picture a cell, the
// stop flag tested after each cell, then the scale bar (three times the micrometres, as
// the tiles are a third of the size) and the way back at 600 um/s.
#include "camera/wide_view.h"

#include <array>
#include <cstdio>

#include "camera/Basler_camera.h"
#include "camera/live_render.h"
#include "camera/live_view.h"
#include "link/serial_link.h"
#include "link/stage_motion.h"
#include "station/responsive_wait.h"
#include "station/status_display.h"
#include "station/system_services.h"
#include "station/view_geometry.h"

namespace {

constexpr int kMosaicSide = 3;
constexpr int kBitmapTries = 10;
constexpr int kContextTries = 5;
constexpr int kBlitTries = 10;

struct CellOffset {
  int column;  // -1, 0, +1: x0 + 737 x column
  int row;     // -1, 0, +1: y0 - 614.96 x row
};

constexpr std::array<CellOffset, 9> kSerpentine = {
    {{-1, -1}, {0, -1}, {1, -1}, {1, 0}, {0, 0}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}}};

int travelSpeed = 0;  // um/s, the skip speed at the first wide view of the run
bool travelSpeedTaken = false;

bool prepareTile(Canvas* canvas, const uint8_t* pixels) {
  int bitmapFailures = 0;
  while (!canvasCreateBitmap(canvas, kDisplayWidth, kDisplayHeight)) {
    showStatus("CreateCompatibleBitmap Failed");
    systemSleepMs(100);
    if (++bitmapFailures >= kBitmapTries) return false;
  }
  int failures = 0;
  while (!canvasCreateContext(canvas)) {
    showStatus("CreateCompatibleDC has failed");
    systemSleepMs(100);
    if (++failures >= kContextTries) return false;
  }
  while (!canvasSetPixels(canvas, pixels, kDisplayWidth, kDisplayHeight)) {
    char text[80];
    std::snprintf(text, sizeof text, "SetDIBits has failed, error count: %d", failures);
    showStatus(text);
    systemSleepMs(100);
    if (++failures >= kContextTries) return false;
  }
  return true;
}

void drawWideScaleBar() {
  Canvas* window = canvasOnWindow(SurfaceWindow::Main);
  drawScaleBar(window, 3);
  canvasFree(window);
}

}  // namespace

IntRect mosaicTileRect(int column, int row, int n) {
  const int width = kDisplayWidth / n + 1;
  const int height = kDisplayHeight / n + 1;
  const int left = column * kDisplayWidth / n;
  const int flippedRow = n - 1 - row;
  const int top = kDisplayHeight - ((flippedRow + 1) * kDisplayHeight) / n;
  return {left, top, left + width, top + height};
}

void DrawMosaicTile(SurfaceWindow window, const uint8_t* pixels, int column, int row, int n) {
  Canvas* canvas = canvasNew(window);
  if (prepareTile(canvas, pixels)) {
    canvasSelectBitmap(canvas);
    const IntRect tile = mosaicTileRect(column, row, n);
    for (int failures = 0; !canvasStretch(canvas, tile);) {
      char text[80];
      std::snprintf(text, sizeof text, "BitBlt to window has failed, error count: %d", failures);
      showStatus(text);
      waitResponsive(100);
      if (++failures >= kBlitTries) break;
    }
    canvasRestoreSelection(canvas);
  }
  canvasFree(canvas);
}

int WideView() {
  const double x0 = serialLink.positionUm[0];
  const double y0 = serialLink.positionUm[1];
  if (!travelSpeedTaken) {
    travelSpeed = station.writingSpeed;
    travelSpeedTaken = true;
  }
  showStatus("Wide view imaging");
  station.stopRequested = 0;
  writingActive = 1;
  wideViewShown = 1;
  recomputeViewGeometry(station);

  MoveXY(x0 + kWideViewPitchXUm, y0 - kWideViewPitchYUm, travelSpeed);
  waitResponsive(200);
  for (const CellOffset& cell : kSerpentine) {
    MoveXY(x0 + kWideViewPitchXUm * cell.column, y0 - kWideViewPitchYUm * cell.row, travelSpeed);
    if (cell.row != 0) waitResponsive(200);
    CameraGrab(camera, 1);
    DrawMosaicTile(SurfaceWindow::Main, displayFrame.pixels, cell.column + 1, cell.row + 1,
                   kMosaicSide);
    showStagePosition();
    waitResponsive(1);
    if (station.stopRequested != 0) break;
  }
  drawWideScaleBar();
  MoveXY(x0, y0, kWideViewReturnSpeed);
  showStagePosition();
  writingActive = 0;
  return 1;
}
