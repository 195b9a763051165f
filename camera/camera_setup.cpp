// Exposure and gain: CameraSetup's five modes and the automatic routines that report on
// standard output. The camera-status control shows the mode's name; values go to the
// status line. Every SDK error ends the mode with "No camera detected".
#include <cstdio>
#include <iostream>

#include "camera/Basler_camera.h"
#include "station/feedback.h"
#include "station/status_display.h"
#include "station/system_services.h"

namespace {

constexpr int kBufferCount = 10;
constexpr unsigned kGrabOneTimeoutMs = 5000;
constexpr int kAutoExposureFrameLimit = 100;

void stopGrabbingAfterOpen(SdkCamera* sdk) {
  cameraSdkOpen(sdk);
  if (cameraSdkIsGrabbing(sdk)) cameraSdkStopGrabbing(sdk);
}

// Full sensor as the image area and the auto functions measuring all of it.
void prepareAutoFunction(SdkCamera* sdk) {
  cameraSdkSetInt(sdk, "OffsetX", cameraSdkGetIntMin(sdk, "OffsetX"));
  cameraSdkSetInt(sdk, "OffsetY", cameraSdkGetIntMin(sdk, "OffsetY"));
  cameraSdkSetInt(sdk, "Width", cameraSdkGetIntMax(sdk, "Width"));
  cameraSdkSetInt(sdk, "Height", cameraSdkGetIntMax(sdk, "Height"));
  cameraSdkAutoRegionCoversImage(sdk);
}

// The brightness target: a fraction on cameras of the 2.0 naming standard, a grey value
// on older ones (oldValue 0: none is set).
void setBrightnessTarget(SdkCamera* sdk, double fraction, int64_t oldValue) {
  if (cameraSdkNamingStandardAtLeast2(sdk)) {
    cameraSdkSetFloat(sdk, "AutoTargetBrightness", fraction);
  } else if (oldValue != 0) {
    cameraSdkSetInt(sdk, "AutoTargetValue", oldValue);
  }
}

bool supportsGainAuto(SdkCamera* sdk) {
  if (cameraSdkIsWritable(sdk, "GainAuto")) return true;
  std::cout << "The camera does not support Gain Auto."
            << "\n\n";
  return false;
}

bool supportsExposureAuto(SdkCamera* sdk) {
  if (cameraSdkIsWritable(sdk, "ExposureAuto")) return true;
  std::cout << "The camera does not support Exposure Auto."
            << "\n\n";
  return false;
}

void AutoGainContinuous(SdkCamera* sdk) {
  if (!supportsGainAuto(sdk)) return;
  prepareAutoFunction(sdk);
  setBrightnessTarget(sdk, 0.3, 80);
  std::cout << "Trying 'GainAuto = Continuous'."
            << "\n";
  std::cout << "Initial Gain = " << cameraSdkGetFloat(sdk, "Gain") << "\n";
  cameraSdkSetEnum(sdk, "GainAuto", "Continuous");
}

void AutoExposureContinuous(SdkCamera* sdk) {
  if (!supportsExposureAuto(sdk)) return;
  prepareAutoFunction(sdk);
  setBrightnessTarget(sdk, 0.3, 80);
  std::cout << "ExposureAuto 'GainAuto = Continuous'."
            << "\n";
  std::cout << "Initial exposure time = " << cameraSdkGetFloat(sdk, "ExposureTime") << " us"
            << "\n";
  cameraSdkSetEnum(sdk, "ExposureAuto", "Continuous");
}

// Returns without waiting for the adjustment to end, unlike the exposure routine.
void AutoGainOnce(SdkCamera* sdk) {
  if (!supportsGainAuto(sdk)) return;
  prepareAutoFunction(sdk);
  setBrightnessTarget(sdk, 0.2, 128);
  std::cout << "Trying 'GainAuto = Once'."
            << "\n";
  std::cout << "Initial Gain = " << cameraSdkGetFloat(sdk, "Gain") << "\n";
  cameraSdkAutoLimitsToRange(sdk, true);
  cameraSdkSetEnum(sdk, "GainAuto", "Once");
}

void AutoExposureOnce(SdkCamera* sdk, SdkGrabResult& result) {
  if (!supportsExposureAuto(sdk)) return;
  prepareAutoFunction(sdk);
  setBrightnessTarget(sdk, 0.2, 0);
  std::cout << "Trying 'ExposureAuto = Once'."
            << "\n";
  std::cout << "Initial exposure time = " << cameraSdkGetFloat(sdk, "ExposureTime") << " us"
            << "\n";
  cameraSdkAutoLimitsToRange(sdk, false);
  cameraSdkSetEnum(sdk, "ExposureAuto", "Once");
  int frames = 0;
  while (cameraSdkGetEnum(sdk, "ExposureAuto") != "Off") {
    cameraSdkGrabOne(sdk, kGrabOneTimeoutMs, result);
    ++frames;
    systemSleepMs(100);
    if (frames > kAutoExposureFrameLimit) {
      throw CameraSdkError{"The adjustment of auto exposure did not finish."};
    }
  }
  std::cout << "ExposureAuto went back to 'Off' after " << frames << " frames."
            << "\n";
  std::cout << "Final exposure time = " << cameraSdkGetFloat(sdk, "ExposureTime") << " us"
            << "\n\n";
}

void setupAutomatic(CameraDevice& device) {
  SdkCamera* sdk = device.camera;
  stopGrabbingAfterOpen(sdk);
  std::snprintf(device.statusText, sizeof device.statusText, "Camera Auto Gain Control");
  if (cameraSdkGetPixelFormatEntry(sdk) != kPixelFormatBayerRG8Entry) {
    cameraSdkSetPixelFormatEntry(sdk, kPixelFormatBayerRG8Entry);
  }
  feedbackSetBoxText(Box::CameraStatus, device.statusText);
  AutoGainContinuous(sdk);
  std::snprintf(device.statusText, sizeof device.statusText, "Camera gain:%d ",
                static_cast<int>(cameraSdkGetFloat(sdk, "Gain")));
  showStatus(device.statusText);
  systemSleepMs(100);
  AutoExposureContinuous(sdk);
  std::snprintf(device.statusText, sizeof device.statusText, "Camera Exposure:%d ",
                static_cast<int>(cameraSdkGetFloat(sdk, "ExposureTime")));
  showStatus(device.statusText);
  cameraSdkSetMaxNumBuffer(sdk, kBufferCount);
}

void setupOneShot(CameraDevice& device) {
  SdkCamera* sdk = device.camera;
  cameraSdkSetEnum(sdk, "GainAuto", "Once");
  AutoGainOnce(sdk);
  cameraSdkSetEnum(sdk, "ExposureAuto", "Once");
  AutoExposureOnce(sdk, device.grabResult);
}

void addResultToSum(CameraDevice& device) {
  const SdkGrabResult& result = device.grabResult;
  if (!result.succeeded || !holdsWholeFrame(device, result)) return;
  for (uint32_t i = 0; i < device.frameBytes; ++i) {
    device.sumFrame[i] = static_cast<uint16_t>(device.sumFrame[i] + result.buffer[i]);
  }
}

void setupSingleFrameSum(CameraDevice& device) {
  SdkCamera* sdk = device.camera;
  cameraSdkRegisterSingleFrameConfiguration(sdk);
  cameraSdkGrabOne(sdk, kGrabOneTimeoutMs, device.grabResult);
  cameraSdkOpen(sdk);
  cameraSdkGrabOne(sdk, kGrabOneTimeoutMs, device.grabResult);
  addResultToSum(device);
  cameraSdkClose(sdk);
  cameraSdkRegisterContinuousConfiguration(sdk);
}

void setupManual(CameraDevice& device) {
  SdkCamera* sdk = device.camera;
  std::snprintf(device.statusText, sizeof device.statusText, "Camera Manual Setting");
  feedbackSetBoxText(Box::CameraStatus, device.statusText);
  stopGrabbingAfterOpen(sdk);
  cameraSdkSetEnum(sdk, "GainAuto", "Off");
  cameraSdkSetFloat(sdk, "Gain", static_cast<double>(device.gain));
  cameraSdkSetEnum(sdk, "ExposureAuto", "Off");
  cameraSdkSetFloat(sdk, "ExposureTime", device.exposureTime);
  std::snprintf(device.statusText, sizeof device.statusText, "exposure time: %.1f",
                device.exposureTime);
  showStatus(device.statusText);
  cameraSdkSetMaxNumBuffer(sdk, kBufferCount);
}

void setupLongExposure(CameraDevice& device) {
  SdkCamera* sdk = device.camera;
  stopGrabbingAfterOpen(sdk);
  cameraSdkSetEnum(sdk, "GainAuto", "Off");
  cameraSdkSetFloat(sdk, "Gain", 23.0);
  cameraSdkSetEnum(sdk, "ExposureAuto", "Off");
  cameraSdkSetFloat(sdk, "ExposureTime", 500000.0);
}

}  // namespace

int CameraSetup(CameraDevice& device, int mode) {
  if (device.connected == 0) {
    showStatus("No camera detected");
    return 0;
  }
  try {
    switch (mode) {
      case 1: setupAutomatic(device); break;
      case 2: setupOneShot(device); break;
      case 3: setupSingleFrameSum(device); break;
      case 4: setupManual(device); break;
      case 5: setupLongExposure(device); break;
      default: break;
    }
  } catch (const CameraSdkError&) {
    showStatus("No camera detected");
  }
  return 0;
}
