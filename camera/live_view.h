// The live camera view. Placeholder until the camera lands.
#pragma once

// Grab one frame and redraw the camera layer on the display window.
void grabAndShowLiveFrame();
