// The one grab-and-draw of the live view's timer and of the switch's mode 7.
#include "camera/live_view.h"

#include "camera/Basler_camera.h"
#include "camera/live_render.h"

int wideViewShown = 0;

void grabAndShowLiveFrame() {
  CameraGrab(camera, 1);
  RenderLive(SurfaceWindow::Display, displayFrame);
}

void resetLiveFrameErrors() {
  resetLiveRenderErrors();
  wideViewShown = 0;
}
