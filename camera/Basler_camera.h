// The camera: the one CameraDevice record with its settings and frame buffers, attaching
// the first camera the SDK finds, taking one frame or the average of several, turning
// each raw BayerRG8 frame into the display picture displayFrame, and the moving test
// pattern that replaces a frame that cannot be had. Exposure and gain are set by
// CameraSetup (camera_setup.cpp); drawing the picture belongs to live_render.cpp.
#pragma once

#include <cstdint>

#include "camera/camera_sdk.h"
#include "pattern/image_buffer.h"

struct CameraDevice {
  CameraDevice();

  uint8_t* displayPixels = nullptr;   // displayFrame.pixels at construction; not used after
  int32_t gain = 20;                  // manual gain, the "Gain" box
  double exposureTime = 30000.0;      // manual exposure, us, the "Expo." box
  int32_t connected = 0;              // 1 once a camera was attached; never reset
  uint8_t* averageFrame = nullptr;    // frameBytes samples: the average of several frames
  uint8_t* convertedFrame = nullptr;  // frameBytes: the display conversion of averageFrame
  uint16_t* sumFrame = nullptr;       // frameBytes 16-bit running sums
  SdkCamera* camera = nullptr;        // replaced, never deleted, by a reconnection
  SdkGrabResult grabResult;
  char statusText[100] = {};
  // One raw 8-bit sensor frame (2464 x 2056) is exactly as large as the display picture
  // (1232 x 1028 x 4), so one count serves every buffer.
  uint32_t frameBytes = 1266496 * 4;
  // Working values of the conversion: the last 2 x 2 Bayer cell converted.
  uint16_t red = 0;
  uint16_t greenA = 0;
  uint16_t greenB = 0;
  uint16_t blue = 0;
  int32_t sourceIndex = 0;
  int32_t targetIndex = 0;
  int32_t sensorWidth = 2464;
  int32_t sensorHeight = 2056;
};

extern ImageBuffer displayFrame;  // the latest camera picture, 1232 x 1028 once sized
extern CameraDevice camera;
extern int grabFailureCount;  // grabs that ended on the test pattern, only ever counted up
extern int blueOnly;          // "Camera Blue only": convert the blue samples alone

// 1 when the SDK was initialised (with or without a camera), 0 after an SDK error,
// reported as "No camera detected".
int CameraConnect(CameraDevice& device);
// The same after terminating the SDK; failure "Fail in Reinitialization" keeps the old camera.
int CameraReconnect(CameraDevice& device);
// Takes frameCount frames (averaged when more than one) into displayFrame, or the test
// pattern when that fails. Always 0.
int CameraGrab(CameraDevice& device, unsigned frameCount);
// Whether a result holds a whole raw sensor frame (frameBytes samples). A grab whose frame
// is smaller fails ("Fail in Grabbing", the test pattern); no frame smaller is read.
bool holdsWholeFrame(const CameraDevice& device, const SdkGrabResult& result);
// One BayerRG8 sensor frame into a bottom-up 32-bit picture of half its size.
void ConvertBayerToDisplay(CameraDevice& device, const uint8_t* raw, uint8_t* target);
// The moving test pattern into displayFrame, dimmer while the laser is on.
void FillTestPattern(CameraDevice& device, uint8_t* target);

// Camera set-up modes 1 to 5: automatic, one-shot, a single-frame sum, manual, long
// exposure. Always 0.
int CameraSetup(CameraDevice& device, int mode);
