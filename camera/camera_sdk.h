// The camera-SDK seam: the pylon operations the camera code uses. Placeholder until the
// camera lands: initialisation works, no device is found.
#pragma once

bool cameraSdkInitialize();
bool cameraSdkHasDevice();
