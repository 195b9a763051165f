// The live picture, the snapshot and the pattern view, with their GDI failure rules:
// bitmap creation 5 tries with 100 ms sleeps, memory context and picture transfer 10,
// the copy to the window 10 with a 100 ms responsive wait after each failure.
#include "camera/live_render.h"

#include <cstdio>
#include <string>

#include "camera/picture_files.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/system_services.h"
#include "station/truncation.h"

int snapshotNumber = 0;

namespace {

constexpr int kBitmapTries = 5;
constexpr int kContextTries = 10;
constexpr int kBlitTries = 10;
constexpr uint32_t kRetrySleepMs = 100;
constexpr int kLiveSpotRadius = 5;

const Rgb kBlack{0, 0, 0};
const Rgb kYellow{255, 255, 0};
const Rgb kRed{255, 0, 0};
const Rgb kGreen{0, 255, 0};
const Rgb kWhite{255, 255, 255};

Canvas* liveCanvas = nullptr;
bool liveSurfaceReady = false;
int liveErrorCount = 0;  // one count for every failure of the live path

void showCount(const char* format, int count) {
  char text[120];
  std::snprintf(text, sizeof text, format, count);
  showStatus(text);
}

// The laser shift comes from Config.txt as it stands: a spot beyond the int range is
// drawn at its end, far off the display.
void drawLaserSpot(Canvas* canvas, int radius) {
  const double x = laser.laserShiftX;
  const double y = kDisplayHeight - static_cast<double>(laser.laserShiftY);
  canvasEllipse(canvas,
                {truncatedToInt(x - radius), truncatedToInt(y - radius), truncatedToInt(x + radius),
                 truncatedToInt(y + radius)},
                kRed);
}

void drawGreenRectangle(Canvas* canvas, const IntRect& rect) {
  canvasRectangle(canvas, rect, kGreen, nullptr);
}

// Bitmap, memory context and picture for the snapshot-style paths; false after ten
// failures of the context or the transfer, or five of the bitmap.
bool prepareCanvas(Canvas* canvas, const uint8_t* pixels, int width, int height) {
  int bitmapFailures = 0;
  int failures = 0;
  while (!canvasCreateBitmap(canvas, width, height)) {
    showCount("CreateCompatibleBitmap failed, error count: %d", bitmapFailures);
    systemSleepMs(kRetrySleepMs);
    if (++bitmapFailures >= kBitmapTries) return false;
  }
  while (!canvasCreateContext(canvas)) {
    showStatus("CreateCompatibleDC has failed");
    if (++failures >= kContextTries) return false;
  }
  if (pixels == nullptr) return true;
  while (!canvasSetPixels(canvas, pixels, width, height)) {
    showCount("SetDIBits has failed, error count: %d", failures);
    systemSleepMs(kRetrySleepMs);
    if (++failures >= kContextTries) return false;
  }
  return true;
}

// The copy onto the window, retried with a responsive wait; false after ten failures.
bool blitWithRetry(Canvas* canvas, int x, int y, int& failures) {
  while (!canvasBlit(canvas, x, y)) {
    showCount("BitBlt to window has failed, error count: %d", failures);
    waitResponsive(100);
    if (++failures >= kBlitTries) return false;
  }
  return true;
}

bool createLiveSurface(SurfaceWindow window, int width, int height, int& result) {
  if (liveCanvas == nullptr) liveCanvas = canvasNew(window);
  for (;;) {
    if (!canvasCreateBitmap(liveCanvas, width, height)) {
      showCount("CreateCompatibleBitmap failed, error count: %d", liveErrorCount);
      systemSleepMs(kRetrySleepMs);
      if (++liveErrorCount >= kBitmapTries) {
        result = 1;
        return false;
      }
      continue;
    }
    if (!canvasCreateContext(liveCanvas)) {
      showStatus("CreateCompatibleDC has failed");
      if (++liveErrorCount >= kContextTries) {
        result = 0;
        return false;
      }
      continue;
    }
    liveSurfaceReady = true;
    return true;
  }
}

}  // namespace

ScaleBar scaleBarFor(double pixelsPerUm) {
  // A zoom from a wild magnification in Config.txt can be 0 or infinite.
  const int lengthUm = truncatedToInt(100.0 / pixelsPerUm);
  return {lengthUm, truncatedToInt(lengthUm * pixelsPerUm)};
}

void drawScaleBar(Canvas* canvas, int multiplier) {
  const ScaleBar bar = scaleBarFor(station.zoom);
  canvasRectangle(canvas, {950, 950, 950 + bar.widthPx, 955}, kBlack, &kYellow);
  const std::string label = std::to_string(bar.lengthUm * multiplier) + " um";
  // Black copies one pixel off in four directions, then yellow on top: an outline.
  canvasText(canvas, 966, 955, label, &kBlack);
  canvasText(canvas, 964, 955, label, &kBlack);
  canvasText(canvas, 965, 956, label, &kBlack);
  canvasText(canvas, 965, 954, label, &kBlack);
  canvasText(canvas, 965, 955, label, &kYellow);
}

void resetLiveRenderErrors() { liveErrorCount = 0; }

int RenderLive(SurfaceWindow window, const ImageBuffer& picture) {
  if (!liveSurfaceReady) {
    int result = 0;
    if (!createLiveSurface(window, picture.width, picture.height, result)) return result;
  }
  while (!canvasSetPixels(liveCanvas, picture.pixels, picture.width, picture.height)) {
    showCount("SetDIBits has failed:%d errors", liveErrorCount);
    waitResponsive(100);
    if (++liveErrorCount >= kContextTries) return 0;
  }
  canvasSelectBitmap(liveCanvas);
  drawScaleBar(liveCanvas, 1);
  if (laser.laserOn != 0) drawLaserSpot(liveCanvas, kLiveSpotRadius);
  drawGreenRectangle(liveCanvas, station.writingAreaRect);
  if (!blitWithRetry(liveCanvas, 0, 0, liveErrorCount)) {
    // The canvas stays marked ready: later frames fail in the transfer and say so.
    canvasDeleteBitmap(liveCanvas);
    return 1;
  }
  canvasRestoreSelection(liveCanvas);
  return 1;
}

int RenderSnapshot(const uint8_t* pixels, int width, int height, int save) {
  Canvas* canvas = canvasNew(SurfaceWindow::Main);
  if (!prepareCanvas(canvas, pixels, width, height)) {
    canvasFree(canvas);
    return 0;
  }
  canvasSelectBitmap(canvas);
  drawScaleBar(canvas, 1);
  drawLaserSpot(canvas, station.spotMarkRadius);
  canvasText(canvas, 10, 10, std::to_string(snapshotNumber), nullptr);
  ++snapshotNumber;
  if (save != 0) {
    drawGreenRectangle(canvas, {station.targetBoxTopLeft.x, station.targetBoxTopLeft.y,
                                station.targetBoxBottomRight.x, station.targetBoxBottomRight.y});
    saveCameraPicture(canvas);
  }
  int failures = 0;
  blitWithRetry(canvas, (kDisplayWidth - width) / 2, (kDisplayHeight - height) / 2, failures);
  canvasRestoreSelection(canvas);
  canvasFree(canvas);
  return 1;
}

// Row r is drawn at height - r, so the picture turns upside down and row 0 falls one
// pixel below the bitmap and is clipped.
int RenderPatternView(SurfaceWindow window, const int32_t* cells, int width, int height) {
  Canvas* canvas = canvasNew(window);
  if (!prepareCanvas(canvas, nullptr, width, height)) {
    canvasFree(canvas);
    return 0;
  }
  canvasSelectBitmap(canvas);
  for (int r = 0; r < height; ++r) {
    for (int c = 0; c < width; ++c) {
      canvasSetPixel(canvas, c, height - r, cells[c + height * r] != 0 ? kWhite : kBlack);
    }
  }
  int failures = 0;
  blitWithRetry(canvas, 0, 0, failures);
  canvasRestoreSelection(canvas);
  canvasFree(canvas);
  return 1;
}
