// The camera-SDK seam on the virtual camera: a camera with the parameters the program
// sets, grabbing that ends by itself after the asked number of results, frames rendered
// from the virtual station at the moment of each result, and faults a test can switch on.
#include <cstdio>
#include <map>

#include "camera/camera_sdk.h"
#include "sim/station_clock.h"
#include "sim/virtual_camera.h"
#include "station/station.h"

struct SdkCamera {
  size_t remainingResults = 0;  // grabbing while non-zero
};

namespace {

struct VirtualCameraState {
  bool present = true;
  bool failOpen = false;
  bool oneShotNeverSettles = false;
  bool grabsThrow = false;
  int failFirst = 0;
  int failCount = 0;
  int resultIndex = 0;
  bool fixedFrame = false;
  bool givenFrame = false;
  uint8_t fixedValue = 0;
  int64_t pixelFormatEntry = 0;  // the camera's own default, not the one the program wants
  std::map<std::string, std::string> enums = {{"GainAuto", "Off"}, {"ExposureAuto", "Off"}};
  std::map<std::string, double> floats = {{"Gain", 0.0}, {"ExposureTime", 5000.0}};
  std::map<std::string, int64_t> ints = {{"OffsetX", 0},
                                         {"OffsetY", 0},
                                         {"Width", kVirtualSensorWidth},
                                         {"Height", kVirtualSensorHeight}};
  std::vector<std::string> log;
  std::vector<uint8_t> frame =
      std::vector<uint8_t>(static_cast<size_t>(kVirtualSensorWidth) * kVirtualSensorHeight);
  SdkCamera camera;
};

VirtualCameraState& state() {
  static VirtualCameraState s;
  return s;
}

void note(const std::string& line) { state().log.push_back(line); }

std::string formatNumber(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

void deliver(SdkGrabResult& result) {
  VirtualCameraState& s = state();
  const int index = s.resultIndex++;
  result.bytes = s.frame.size();
  result.buffer = s.frame.data();
  result.succeeded = !(index >= s.failFirst && index < s.failFirst + s.failCount);
  if (!result.succeeded || s.givenFrame) return;
  if (s.fixedFrame) {
    std::fill(s.frame.begin(), s.frame.end(), s.fixedValue);
    return;
  }
  VirtualImaging imaging;
  imaging.gain = s.floats["Gain"];
  imaging.exposureUs = s.floats["ExposureTime"];
  imaging.automatic = s.enums["GainAuto"] != "Off" || s.enums["ExposureAuto"] != "Off";
  const uint64_t now = stationClockNowMs();
  // The virtual laser falls where the program's laser shift says (its red spot mark).
  StationView view = virtualStationView(now);
  view.spotDisplayX = laser.laserShiftX;
  view.spotDisplayYUp = laser.laserShiftY;
  renderVirtualFrame(view, virtualStationExposure(now), imaging, s.frame.data());
}

}  // namespace

void virtualCameraReset() { state() = VirtualCameraState{}; }

void virtualCameraSetPresent(bool present) { state().present = present; }

void virtualCameraFailResults(int first, int count) {
  state().failFirst = first;
  state().failCount = count;
}

void virtualCameraUseFixedFrame(uint8_t value) {
  state().fixedFrame = true;
  state().fixedValue = value;
}

void virtualCameraUseFrameBytes(const std::vector<uint8_t>& bytes) {
  state().givenFrame = true;
  // A buffer of exactly this size, so that reading past it is caught.
  state().frame = std::vector<uint8_t>(bytes);
}

const std::vector<std::string>& virtualCameraLog() { return state().log; }

void virtualCameraSetPixelFormatEntry(int64_t entry) { state().pixelFormatEntry = entry; }

void cameraSdkInitialize() {}
void cameraSdkTerminate() {}

SdkCamera* cameraSdkCreateFirstCamera() {
  if (!state().present)
    throw CameraSdkError{
        "No device is available or no device contains the provided device info properties."};
  return &state().camera;
}

void virtualCameraFailOpen(bool fail) { state().failOpen = fail; }
void virtualCameraOneShotNeverSettles(bool never) { state().oneShotNeverSettles = never; }
void virtualCameraGrabsThrow(bool fail) { state().grabsThrow = fail; }

void cameraSdkOpen(SdkCamera*) {
  if (state().failOpen) throw CameraSdkError{"The device is controlled by another application."};
  note("open");
}

void cameraSdkClose(SdkCamera*) { note("close"); }

void cameraSdkStartGrabbing(SdkCamera* camera, size_t maxImages) {
  camera->remainingResults = maxImages;
  note("start grabbing " + std::to_string(maxImages));
}

void cameraSdkStopGrabbing(SdkCamera* camera) {
  camera->remainingResults = 0;
  note("stop grabbing");
}

bool cameraSdkIsGrabbing(SdkCamera* camera) { return camera->remainingResults > 0; }

void cameraSdkRetrieveResult(SdkCamera* camera, SdkGrabResult& result) {
  if (camera->remainingResults == 0) throw CameraSdkError{"not grabbing"};
  if (state().grabsThrow) throw CameraSdkError{"The device has been removed."};
  --camera->remainingResults;
  deliver(result);
}

void cameraSdkGrabOne(SdkCamera*, unsigned, SdkGrabResult& result) {
  note("grab one");
  if (state().grabsThrow) throw CameraSdkError{"The device has been removed."};
  deliver(result);
}

bool cameraSdkIsWritable(SdkCamera*, const char* name) {
  const std::string key(name);
  return state().enums.count(key) + state().floats.count(key) + state().ints.count(key) > 0;
}

std::string cameraSdkGetEnum(SdkCamera*, const char* name) {
  auto found = state().enums.find(name);
  if (found == state().enums.end()) throw CameraSdkError{std::string("no enumeration ") + name};
  // A one-shot adjustment of the virtual camera settles at once, unless told otherwise.
  if (found->second == "Once" && !state().oneShotNeverSettles) found->second = "Off";
  return found->second;
}

void cameraSdkSetEnum(SdkCamera*, const char* name, const char* entry) {
  state().enums[name] = entry;
  note(std::string("set ") + name + " " + entry);
}

int64_t cameraSdkGetPixelFormatEntry(SdkCamera*) { return state().pixelFormatEntry; }

void cameraSdkSetPixelFormatEntry(SdkCamera*, int64_t entry) {
  state().pixelFormatEntry = entry;
  note("set PixelFormat " + std::to_string(entry));
}

double cameraSdkGetFloat(SdkCamera*, const char* name) { return state().floats[name]; }
double cameraSdkGetFloatMin(SdkCamera*, const char*) { return 0.0; }
double cameraSdkGetFloatMax(SdkCamera*, const char* name) {
  return std::string(name) == "Gain" ? 24.0 : 1000000.0;
}

void cameraSdkSetFloat(SdkCamera*, const char* name, double value) {
  state().floats[name] = value;
  note(std::string("set ") + name + " " + formatNumber(value));
}

int64_t cameraSdkGetInt(SdkCamera*, const char* name) { return state().ints[name]; }
int64_t cameraSdkGetIntMin(SdkCamera*, const char*) { return 0; }
int64_t cameraSdkGetIntMax(SdkCamera*, const char* name) {
  const std::string key(name);
  if (key == "Width") return kVirtualSensorWidth;
  if (key == "Height") return kVirtualSensorHeight;
  return 0;
}

void cameraSdkSetInt(SdkCamera*, const char* name, int64_t value) {
  state().ints[name] = value;
  note(std::string("set ") + name + " " + std::to_string(value));
}

void cameraSdkAutoRegionCoversImage(SdkCamera*) { note("auto region whole image"); }

void cameraSdkAutoLimitsToRange(SdkCamera*, bool gain) {
  note(gain ? "auto gain limits" : "auto exposure limits");
}

void cameraSdkSetMaxNumBuffer(SdkCamera*, int buffers) {
  note("set MaxNumBuffer " + std::to_string(buffers));
}

void cameraSdkRegisterSingleFrameConfiguration(SdkCamera*) { note("single frame configuration"); }
void cameraSdkRegisterContinuousConfiguration(SdkCamera*) { note("continuous configuration"); }
bool cameraSdkNamingStandardAtLeast2(SdkCamera*) { return true; }
