// Camera command handlers: the order of switching, waiting and grabbing for each.
#include "camera/camera_commands.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "camera/Basler_camera.h"
#include "camera/live_render.h"
#include "camera/live_view_control.h"
#include "camera/picture_files.h"
#include "camera/wide_view.h"
#include "link/controller_commands.h"
#include "station/data_paths.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"

namespace {

constexpr int kBoxChars = 10;

void showCameraSettings() {
  feedbackSetBoxText(Box::Gain, std::to_string(camera.gain));
  char exposure[40];
  std::snprintf(exposure, sizeof exposure, "%.0f", camera.exposureTime);
  feedbackSetBoxText(Box::Exposure, exposure);
}

}  // namespace

void onCameraCapture() { takeIlluminatedSnapshot(); }

void takeIlluminatedSnapshot() {
  setLiveView(0);
  SwitchLaser(laser, 0);
  CameraSetup(camera, 4);
  waitResponsive(100);
  SwitchIllumination(1);
  waitResponsive(100);
  CameraGrab(camera, 1);
  SwitchIllumination(0);
  RenderLive(SurfaceWindow::Display, displayFrame);
  feedbackFocusMainWindow();
}

void onWideView() {
  if (writingActive == 1) return;
  setLiveView(0);
  SwitchIllumination(1);
  waitResponsive(100);
  WideView();
  SwitchIllumination(0);
  feedbackFocusMainWindow();
}

void onCameraManualEntry() {
  int gain = camera.gain;
  if (std::sscanf(feedbackGetBoxText(Box::Gain, kBoxChars).c_str(), "%d", &gain) == 1) {
    camera.gain = std::clamp(gain, 1, 20);
  }
  double exposure = camera.exposureTime;
  if (std::sscanf(feedbackGetBoxText(Box::Exposure, kBoxChars).c_str(), "%lf", &exposure) == 1) {
    camera.exposureTime = std::clamp(exposure, 30.0, 500000.0);
  }
  showCameraSettings();
  CameraSetup(camera, 4);
  CameraGrab(camera, 1);
}

void onCameraAutoSetting() {
  blueOnly = 0;
  CameraSetup(camera, 1);
  CameraGrab(camera, 1);
  RenderLive(SurfaceWindow::Display, displayFrame);
  showCameraSettings();
}

void onCameraBlueOnly() { blueOnly = 1; }

void onSaveImage() { SaveViewImage(dataPaths, SurfaceWindow::Main); }

void showFirstCameraFrame() {
  CameraGrab(camera, 1);
  RenderLive(SurfaceWindow::Display, displayFrame);
}
