// Editing the vector lines with the pointer on the display window: chains of segments
// with a rubber band, the width buttons and the eraser, deleting one line or all of them.
// Points are display-window pixels. The display window hands its mouse messages here;
// the list itself is line_pattern.h, drawing line_display.h. Nothing here changes the list
// while an operation runs.
#pragma once

#include "station/station.h"

void leftClick(IntPoint point);
void pointerMove(IntPoint point);  // moves the rubber band while a chain is drawn
void rightClick();                 // ends the chain and removes the rubber band
// The radio of the "Draw Line (um)" group that shows widthClass: 1, 3, 6, anything else 10.
int widthRadioFor(int widthClass);
// Width buttons: 1, 3, 6 or 10 um; clears erasing.
void setWidthClass(int widthUm);
// The "Erase" button: the next left clicks delete lines instead of drawing; the pointer
// shows the cross at once.
void startErasing();

// Deletes the first segment in list order that passes within 3 pixels of point, painting
// it out on the main window. A segment whose ends fall on one pixel is never found.
void eraseLineAt(IntPoint point);
// Paints every line out on the main window, empties the list and ends any chain.
void deleteAllLines();
