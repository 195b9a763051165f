// The main window's own small commands and first states: the "Blink" button with its
// duration box, the "Center Writing Only" check mark and the three layer check boxes, and the
// states the controls show right after the window is created. Stage, camera and writing
// commands live with their modules; the dispatch switch is command_dispatch.cpp.
#pragma once

extern int blinkMs;  // "Blink" duration, 1..5000 ms

// Reads the "ms" box, clamps it into blinkMs, writes it back, and switches the laser on
// for blinkMs while the windows stay responsive.
void blinkLaser();
// Toggles a 0/1 flag and the check mark of its check box.
void toggleCheckBox(int& flag, int controlId);
// Mount radio, check marks, writing-area and writing-speed boxes, camera boxes.
void showFirstStates();
void showBlinkDuration();
