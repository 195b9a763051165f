// The camera tests start from a fresh station, a fresh virtual camera, an empty recorded
// display and the camera record disconnected.
#pragma once

#include "camera/Basler_camera.h"
#include "sim/recorded_display.h"
#include "sim/virtual_camera.h"
#include "station_fixture.h"

class CameraTest : public StationTest {
 protected:
  void SetUp() override {
    StationTest::SetUp();
    virtualCameraReset();
    recordedDisplayReset();
    camera.connected = 0;
    camera.camera = nullptr;
    camera.gain = 20;
    camera.exposureTime = 30000.0;
    grabFailureCount = 0;
    blueOnly = 0;
    station.zoom = station.zoomReset;
  }
};
