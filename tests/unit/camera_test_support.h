// Shared set-up of the camera tests: a fresh virtual camera, recorded operator and
// display, the clock at a known time, and the camera record disconnected.
#pragma once

#include "app/station.h"
#include "camera/Basler_camera.h"
#include "sim/recorded_display.h"
#include "sim/recorded_feedback.h"
#include "sim/virtual_camera.h"
#include "sim/virtual_clock.h"

inline void resetCameraWorld() {
  virtualClockReset();
  virtualCameraReset();
  recordedFeedbackReset();
  recordedDisplayReset();
  camera.connected = 0;
  camera.camera = nullptr;
  camera.gain = 20;
  camera.exposureTime = 30000.0;
  grabFailureCount = 0;
  blueOnly = 0;
  laser.laserOn = 0;
  station.zoom = station.zoomReset;
}

// True when some recorded operator call equals line.
inline bool recordedCall(const std::string& line) {
  for (const std::string& call : recordedCalls()) {
    if (call.rfind(line, 0) == 0) return true;
  }
  return false;
}
