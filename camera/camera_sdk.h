// The camera-SDK seam: exactly the camera-library operations the camera code uses, as
// free functions on an opaque camera object. Parameters are addressed by the library's
// own names ("Gain", "ExposureAuto", ...). Every failure of the library arrives as a
// CameraSdkError; the camera code catches it at its own call sites.
// Implementations: camera_sdk_pylon_win32.cpp (the vendor library, MSVC builds only),
// camera_sdk_absent.cpp (initialisation works, no device), sim/virtual_camera_seam.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

struct CameraSdkError {
  std::string message;
};

struct SdkCamera;  // the library's instant camera, owned by the implementation

// What one retrieved or grabbed frame delivered. The buffer stays valid until the next
// retrieve or grab on the same camera.
struct SdkGrabResult {
  bool succeeded = false;
  const uint8_t* buffer = nullptr;
  size_t bytes = 0;
};

// Entry of the universal pixel-format enumeration that the conversion needs (BayerRG8).
constexpr int64_t kPixelFormatBayerRG8Entry = 32;

void cameraSdkInitialize();
void cameraSdkTerminate();  // also releases what the library holds for the old camera
// The first device of any transport layer, wrapped in a new instant camera that owns it.
// Throws when there is none.
SdkCamera* cameraSdkCreateFirstCamera();

void cameraSdkOpen(SdkCamera* camera);
void cameraSdkClose(SdkCamera* camera);
// Latest-images strategy, grab loop provided by the caller: grabbing ends by itself
// after maxImages results.
void cameraSdkStartGrabbing(SdkCamera* camera, size_t maxImages);
void cameraSdkStopGrabbing(SdkCamera* camera);
bool cameraSdkIsGrabbing(SdkCamera* camera);
// Waits without a time limit for the next result.
void cameraSdkRetrieveResult(SdkCamera* camera, SdkGrabResult& result);
// A single grab of its own; a time-out throws.
void cameraSdkGrabOne(SdkCamera* camera, unsigned timeoutMs, SdkGrabResult& result);

// Parameters by their library names. Every write is verified by the library.
bool cameraSdkIsWritable(SdkCamera* camera, const char* name);
std::string cameraSdkGetEnum(SdkCamera* camera, const char* name);
void cameraSdkSetEnum(SdkCamera* camera, const char* name, const char* entry);
int64_t cameraSdkGetPixelFormatEntry(SdkCamera* camera);
void cameraSdkSetPixelFormatEntry(SdkCamera* camera, int64_t entry);
double cameraSdkGetFloat(SdkCamera* camera, const char* name);
double cameraSdkGetFloatMin(SdkCamera* camera, const char* name);
double cameraSdkGetFloatMax(SdkCamera* camera, const char* name);
void cameraSdkSetFloat(SdkCamera* camera, const char* name, double value);
int64_t cameraSdkGetInt(SdkCamera* camera, const char* name);
int64_t cameraSdkGetIntMin(SdkCamera* camera, const char* name);
int64_t cameraSdkGetIntMax(SdkCamera* camera, const char* name);
void cameraSdkSetInt(SdkCamera* camera, const char* name, int64_t value);
// The measuring region of the auto functions over the whole image area; its parameter
// names differ between camera families, so the implementation chooses them.
void cameraSdkAutoRegionCoversImage(SdkCamera* camera);
// The auto-function limits of gain (gain true) or exposure time set to the camera's range.
void cameraSdkAutoLimitsToRange(SdkCamera* camera, bool gain);

// The instant camera's own buffer count.
void cameraSdkSetMaxNumBuffer(SdkCamera* camera, int buffers);
// The library's published acquisition configurations, registered so that the camera
// owns and deletes them.
void cameraSdkRegisterSingleFrameConfiguration(SdkCamera* camera);
void cameraSdkRegisterContinuousConfiguration(SdkCamera* camera);
// Whether the camera follows the feature-naming standard 2.0 or later.
bool cameraSdkNamingStandardAtLeast2(SdkCamera* camera);
