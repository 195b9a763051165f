// The handles of the program's instance and its two windows: set when the windows are
// made (main_window_win32.cpp), read by the Windows sides of the seams (feedback, dialogs)
// without standing on the main window's module.
#pragma once

#include <windows.h>

inline HINSTANCE appInstance = nullptr;
inline HWND mainWindow = nullptr;
inline HWND displayWindow = nullptr;
