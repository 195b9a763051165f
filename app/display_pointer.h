// The display window's mouse: the wheel zooms, the buttons and moves edit the vector
// lines, and while the laser is on a right click sets the laser spot. The Win32 window
// procedure (display_window_win32.cpp) cracks the messages and sets the cursor this
// module chooses; line editing itself is pattern/line_editing.h.
#pragma once

enum class DisplayCursor { Arrow, Hand, Cross };

// Points are display-window client pixels.
void onDisplayLeftButtonDown(int x, int y);
void onDisplayRightButtonDown(int x, int y);
DisplayCursor onDisplayMouseMove(int x, int y);
void onDisplayWheel(int delta);  // the signed wheel delta

// Asks whether the laser spot is at the display point (x, y) and takes it on Yes.
void setLaserSpotAt(int x, int y);
