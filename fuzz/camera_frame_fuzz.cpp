// Camera frames as the fuzzer gives them, through the grab path to the display picture.
// The first byte chooses: bit 0 "Camera Blue only", bits 1-2 the frames averaged (1 to
// 4), bit 3 the rest of the input is the frame exactly as the camera delivers it (any
// size, as a camera set to another image size or pixel format would send) rather than
// repeated over a full sensor frame, bit 4 the laser on (the test pattern's dimmer
// bands), bit 5 the first result of the grab fails, bit 6 the frame goes to the
// single-frame sum of camera set-up mode 3 instead of a grab.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "camera/Basler_camera.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/tile.h"
#include "sim/virtual_camera.h"
#include "station/station.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  displayFrame.width = kDisplayWidth;
  displayFrame.height = kDisplayHeight;
  CameraConnect(camera);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  freshStation();
  const uint8_t choice = data[0];
  const uint8_t* frame = data + 1;
  const size_t frameSize = size - 1;
  blueOnly = choice & 1;
  const unsigned frameCount = 1 + ((choice >> 1) & 3);
  laser.laserOn = (choice >> 4) & 1;

  virtualCameraReset();
  if (choice & 8) {
    virtualCameraUseFrameBytes(std::vector<uint8_t>(frame, frame + frameSize));
  } else {
    static std::vector<uint8_t> full(camera.frameBytes);
    std::fill(full.begin(), full.end(), uint8_t{0});
    tile(full.data(), full.size(), frame, frameSize);
    virtualCameraUseFrameBytes(full);
  }
  if (choice & 32) virtualCameraFailResults(0, 1);
  if (choice & 64)
    CameraSetup(camera, 3);
  else
    CameraGrab(camera, frameCount);
  return 0;
}
