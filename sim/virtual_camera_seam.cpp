// Placeholder until the virtual camera lands: no device.
#include "camera/camera_sdk.h"

bool cameraSdkInitialize() { return true; }
bool cameraSdkHasDevice() { return false; }
