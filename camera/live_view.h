// The live camera view: timer 1 of the main window grabs a frame and draws it on the
// display window five times a second. LiveView switches it (modes 0 to 7) and remembers
// whether it ran, so that an operation can stop it and put it back.
#pragma once

extern int liveOn;         // 1 while timer 1 runs
extern int liveWasOn;      // liveOn before its last change
extern int wideViewShown;  // set by wide view, cleared when the live view starts

// 0 off, 1 on, 2 back to the state before the last change, 3 was it on, 4 is it on,
// 7 one grab and draw without touching the timer; 5, 6 and others nothing.
int LiveView(int mode);

// Grab one frame and redraw the camera layer on the display window.
void grabAndShowLiveFrame();
