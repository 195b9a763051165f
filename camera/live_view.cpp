// Switching the live view and the one grab-and-draw that its timer and mode 7 do.
#include "camera/live_view.h"

#include "app/feedback.h"
#include "camera/Basler_camera.h"
#include "camera/live_render.h"

int liveOn = 0;
int liveWasOn = 0;
int wideViewShown = 0;

namespace {

constexpr int kVideoOnRadio = 2112;
constexpr int kVideoOffRadio = 2113;

void liveOff() {
  liveWasOn = liveOn;
  feedbackSetLiveTimer(false);
  feedbackCheckRadio(kVideoOnRadio, kVideoOffRadio, kVideoOffRadio);
  liveOn = 0;
}

void liveStart() {
  liveWasOn = liveOn;
  feedbackCheckRadio(kVideoOnRadio, kVideoOffRadio, kVideoOnRadio);
  wideViewShown = 0;
  resetLiveRenderErrors();
  feedbackSetLiveTimer(true);
  liveOn = 1;
}

}  // namespace

int LiveView(int mode) {
  switch (mode) {
    case 0: liveOff(); break;
    case 1: liveStart(); break;
    case 2:
      if (liveWasOn == 0) {
        liveOff();
      } else {
        liveStart();
      }
      break;
    case 3: return liveWasOn != 0 ? 1 : 0;
    case 4: return liveOn;
    case 7: grabAndShowLiveFrame(); break;
    default: break;
  }
  feedbackFocusMainWindow();
  return 0;
}

void grabAndShowLiveFrame() {
  CameraGrab(camera, 1);
  RenderLive(SurfaceWindow::Display, displayFrame);
}
