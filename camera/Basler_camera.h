// The camera: the one CameraDevice record with its settings and buffers, connecting,
// grabbing and converting frames. Placeholder until the camera lands.
#pragma once

struct CameraDevice {
  int connected = 0;
  int gain = 20;
  double exposureUs = 30000.0;
};

extern CameraDevice camera;

int CameraConnect(CameraDevice& camera);          // 1 found, 0 no camera
int CameraSetup(CameraDevice& camera, int mode);  // modes 1..5
