// Placeholder until the link lands: paints the jog pad on the main window.
#include "app/shell_paint_win32.h"

void paintJogPad(HDC) {}
