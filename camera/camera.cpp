// The camera record and its frames: construction of the buffers, attaching the camera,
// and the grab loop with its averaging and test-pattern fallback.
#include <cstring>

#include "camera/Basler_camera.h"
#include "camera/heap_blocks.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/system_services.h"
#include "station/view_geometry.h"

// displayFrame first: the camera record copies its pixel pointer when it is built. It is
// the whole display from the start, so every picture the live view draws has one size.
ImageBuffer displayFrame(kDisplayWidth, kDisplayHeight);
CameraDevice camera;
int grabFailureCount = 0;
int blueOnly = 0;

namespace {

constexpr int kAttemptsPerFrame = 100;
constexpr uint32_t kRestartSleepMs = 10;

// Attaches the first camera of any transport layer; the old object, if any, is left to
// the library, which still owns its device.
void attachFirstCamera(CameraDevice& device) {
  device.camera = cameraSdkCreateFirstCamera();
  if (device.camera != nullptr) device.connected = 1;
}

// Showing a camera frame puts the view back to camera zoom.
void followCameraZoom() {
  if (!(station.zoom == station.zoomReset)) {
    station.zoom = station.zoomReset;
    recomputeViewGeometry(station);
  }
}

void accumulate(CameraDevice& device, const uint8_t* raw, unsigned frameIndex) {
  uint16_t* sum = device.sumFrame;
  if (frameIndex == 0) {
    for (uint32_t i = 0; i < device.frameBytes; ++i) sum[i] = raw[i];
  } else {
    for (uint32_t i = 0; i < device.frameBytes; ++i)
      sum[i] = static_cast<uint16_t>(sum[i] + raw[i]);
  }
}

// Up to 100 attempts at one frame; false when the frame is given up.
bool retrieveOneFrame(CameraDevice& device, unsigned frameCount, unsigned goodFrames) {
  for (int attempt = 0; attempt < kAttemptsPerFrame; ++attempt) {
    if (cameraSdkIsGrabbing(device.camera)) {
      cameraSdkRetrieveResult(device.camera, device.grabResult);
      if (device.grabResult.succeeded) return true;
      if (goodFrames == frameCount) return false;
    } else {
      cameraSdkStartGrabbing(device.camera, frameCount);
      systemSleepMs(kRestartSleepMs);
    }
  }
  return false;
}

// A camera set to another image size or pixel format delivers less than a sensor frame;
// reading it as one would run past its end, so such a grab fails.
void requireWholeFrame(const CameraDevice& device) {
  if (!holdsWholeFrame(device, device.grabResult))
    throw CameraSdkError{"the frame is smaller than the sensor's"};
}

void grabFrames(CameraDevice& device, unsigned frameCount) {
  cameraSdkStartGrabbing(device.camera, frameCount);
  unsigned goodFrames = 0;
  for (unsigned frame = 0; frame < frameCount; ++frame) {
    if (!retrieveOneFrame(device, frameCount, goodFrames)) continue;
    if (frameCount > 1) {
      requireWholeFrame(device);
      accumulate(device, device.grabResult.buffer, frame);
      ++goodFrames;
    }
  }
  if (frameCount == 1) {
    requireWholeFrame(device);
    ConvertBayerToDisplay(device, device.grabResult.buffer, displayFrame.pixels);
    return;
  }
  // Divided by the frames asked for, not those had: a given-up frame darkens the average.
  for (uint32_t i = 0; i < device.frameBytes; ++i) {
    device.averageFrame[i] = static_cast<uint8_t>(device.sumFrame[i] / frameCount);
  }
  ConvertBayerToDisplay(device, device.averageFrame, device.convertedFrame);
  std::memcpy(displayFrame.pixels, device.convertedFrame, device.frameBytes);
}

}  // namespace

CameraDevice::CameraDevice() {
  displayPixels = displayFrame.pixels;
  averageFrame = allocateRunBlock<uint8_t>(frameBytes);
  convertedFrame = allocateRunBlock<uint8_t>(frameBytes);
  sumFrame = allocateRunBlock<uint16_t>(frameBytes);
}

bool holdsWholeFrame(const CameraDevice& device, const SdkGrabResult& result) {
  return result.buffer != nullptr && result.bytes >= device.frameBytes;
}

int CameraConnect(CameraDevice& device) {
  try {
    cameraSdkInitialize();
    attachFirstCamera(device);
    return 1;
  } catch (const CameraSdkError&) {
    showStatus("No camera detected");
    return 0;
  }
}

int CameraReconnect(CameraDevice& device) {
  try {
    cameraSdkTerminate();
    cameraSdkInitialize();
    attachFirstCamera(device);
    return 1;
  } catch (const CameraSdkError&) {
    showStatus("Fail in Reinitialization");
    return 0;
  }
}

int CameraGrab(CameraDevice& device, unsigned frameCount) {
  bool grabbed = false;
  if (device.connected != 0) {
    try {
      grabFrames(device, frameCount);
      grabbed = true;
    } catch (const CameraSdkError&) {
    }
  }
  if (!grabbed) {
    showStatus("Fail in Grabbing");
    ++grabFailureCount;
    FillTestPattern(device, displayFrame.pixels);
  }
  followCameraZoom();
  return 0;
}
