// Editing the vector lines with the pointer on the display window: chains of segments
// with a rubber band, the width buttons and the eraser. Points are display-window pixels.
// The display window hands its mouse messages here; the list itself is line_pattern.h.
#pragma once

#include "app/station.h"

void leftClick(IntPoint point);
void pointerMove(IntPoint point);  // moves the rubber band while a chain is drawn
void rightClick();                 // ends the chain and removes the rubber band
// Width buttons: 1, 3, 6 or 10 um; clears erasing.
void setWidthClass(int widthUm);
