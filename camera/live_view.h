// The live camera view's frame: what timer 1 of the main window and the live-view switch
// (camera/live_view_control.h, which decides when) call to grab and draw. It owns the
// wide-view flag that says the mosaic, not a live frame, is on the screen.
#pragma once

extern int wideViewShown;  // set by wide view, cleared when the live view starts

// Grab one frame and redraw the camera layer on the display window.
void grabAndShowLiveFrame();
// The live view is starting: forget the frame errors counted so far, and the mosaic.
void resetLiveFrameErrors();
