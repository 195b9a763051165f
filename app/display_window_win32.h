// The display window: the 1232 x 1028 child of the main window that shows the camera
// picture and the pattern overlays. Owns its window procedure; what it paints comes
// from the camera module (paintDisplayWindow).
#pragma once

#include <windows.h>

constexpr const WCHAR* kDisplayWindowClass = L"Display Window";

LRESULT CALLBACK displayWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
