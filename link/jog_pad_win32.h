// The jog pad's paint on the main window, called by its WM_PAINT. Windows-only.
#pragma once

#include <windows.h>

// Six framed rectangles with their captions, where jogPad.rects puts them.
void paintJogPad(HDC dc);
