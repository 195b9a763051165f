// Placeholder until the camera lands: paints the display window.
#include "app/shell_paint_win32.h"

void paintDisplayWindow(HDC) {}
