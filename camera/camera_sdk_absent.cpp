// The camera-SDK seam where no camera SDK is installed: no device is ever found.
#include "camera/camera_sdk.h"

bool cameraSdkInitialize() { return true; }
bool cameraSdkHasDevice() { return false; }
