// Line editing with the pointer: see line_editing.h.
#include "pattern/line_editing.h"

void leftClick(IntPoint) {}
void pointerMove(IntPoint) {}
void rightClick() {}
void setWidthClass(int) {}
