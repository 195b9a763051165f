// The display window's paint: the last picture drawn there, from its back buffer.
#include "app/shell_paint_win32.h"
#include "camera/display_surface_win32.h"

void paintDisplayWindow(HDC dc) { paintDisplayBackBuffer(dc); }
