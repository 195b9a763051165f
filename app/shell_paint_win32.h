// What the window procedures call to paint: the jog pad on the main window (link) and
// the display window's picture (camera). Windows-only.
#pragma once

#include <windows.h>

void paintJogPad(HDC dc);
void paintDisplayWindow(HDC dc);
