// The camera-SDK seam where no camera library is installed: initialisation works and no
// device is ever found, so the program runs on its test pattern.
#include "camera/camera_sdk.h"

namespace {

[[noreturn]] void noCamera() { throw CameraSdkError{"no camera library"}; }

}  // namespace

void cameraSdkInitialize() {}
void cameraSdkTerminate() {}
SdkCamera* cameraSdkCreateFirstCamera() { noCamera(); }

void cameraSdkOpen(SdkCamera*) { noCamera(); }
void cameraSdkClose(SdkCamera*) { noCamera(); }
void cameraSdkStartGrabbing(SdkCamera*, size_t) { noCamera(); }
void cameraSdkStopGrabbing(SdkCamera*) { noCamera(); }
bool cameraSdkIsGrabbing(SdkCamera*) { noCamera(); }
void cameraSdkRetrieveResult(SdkCamera*, SdkGrabResult&) { noCamera(); }
void cameraSdkGrabOne(SdkCamera*, unsigned, SdkGrabResult&) { noCamera(); }

bool cameraSdkIsWritable(SdkCamera*, const char*) { noCamera(); }
std::string cameraSdkGetEnum(SdkCamera*, const char*) { noCamera(); }
void cameraSdkSetEnum(SdkCamera*, const char*, const char*) { noCamera(); }
int64_t cameraSdkGetPixelFormatEntry(SdkCamera*) { noCamera(); }
void cameraSdkSetPixelFormatEntry(SdkCamera*, int64_t) { noCamera(); }
double cameraSdkGetFloat(SdkCamera*, const char*) { noCamera(); }
double cameraSdkGetFloatMin(SdkCamera*, const char*) { noCamera(); }
double cameraSdkGetFloatMax(SdkCamera*, const char*) { noCamera(); }
void cameraSdkSetFloat(SdkCamera*, const char*, double) { noCamera(); }
int64_t cameraSdkGetInt(SdkCamera*, const char*) { noCamera(); }
int64_t cameraSdkGetIntMin(SdkCamera*, const char*) { noCamera(); }
int64_t cameraSdkGetIntMax(SdkCamera*, const char*) { noCamera(); }
void cameraSdkSetInt(SdkCamera*, const char*, int64_t) { noCamera(); }
void cameraSdkAutoRegionCoversImage(SdkCamera*) { noCamera(); }
void cameraSdkAutoLimitsToRange(SdkCamera*, bool) { noCamera(); }
void cameraSdkSetMaxNumBuffer(SdkCamera*, int) { noCamera(); }
void cameraSdkRegisterSingleFrameConfiguration(SdkCamera*) { noCamera(); }
void cameraSdkRegisterContinuousConfiguration(SdkCamera*) { noCamera(); }
bool cameraSdkNamingStandardAtLeast2(SdkCamera*) { noCamera(); }
