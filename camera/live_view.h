// The live camera view. Placeholder until the camera lands.
#pragma once

// Grab one frame and redraw the camera layer on the display window.
void grabAndShowLiveFrame();
// Forget the frame errors counted so far (live view switched on).
void resetLiveFrameErrors();
