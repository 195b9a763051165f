// The live view switch: timer 1 of the main window (200 ms, each tick grabs and shows a
// frame) and the Video "On"/"Off" radios, with one remembered earlier state so that a
// dialog can switch the view off and restore it afterwards. Grabbing and rendering a
// frame belong to camera/live_view.h; this module only decides when.
#pragma once

// Modes: 0 off, 1 on, 2 back to the remembered state, 3 was it on before the last
// switch (1/0), 4 is it on now (1/0), 7 grab and show one frame without touching the
// timer; other modes do nothing. Every mode but 3 and 4 ends by focusing the main
// window. Modes 3 and 4 return their answer, the others 0.
int setLiveView(int mode);

constexpr int kLiveViewOff = 0;
constexpr int kLiveViewOn = 1;
constexpr int kLiveViewQueryNow = 4;
constexpr int kLiveViewOneFrame = 7;
