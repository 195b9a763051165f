// The program's two windows: the main window (menu, control column, jog pad) and its
// child the display window (camera picture and pattern overlays). Owns their classes,
// their handles and the main window procedure; the controls are made by
// main_controls_win32.cpp, and every command's behaviour is in command_dispatch.cpp.
#pragma once

#include <windows.h>

#include "app/shell_windows_win32.h"

constexpr int kTitleChars = 100;

extern WCHAR windowTitle[kTitleChars];
extern WCHAR windowClassName[kTitleChars];  // string table entry 109

// Both classes: redraw on resize, icon 137, arrow cursor, window background, menu 109.
ATOM registerWindowClasses(HINSTANCE instance);
// Creates "Telvane" at (0, 0), 1482 x 1128, and its 1232 x 1028 display child; shows the
// main window. FALSE when the main window could not be made.
BOOL initInstance(HINSTANCE instance, int showMode);
