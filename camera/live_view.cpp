// Placeholder until the camera lands.
#include "camera/live_view.h"

void grabAndShowLiveFrame() {}

void resetLiveFrameErrors() {}
