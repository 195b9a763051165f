// Where the vector lines sit on the display and how they are drawn: the mappings between
// display pixels and micrometres from the display centre (each with its own truncation),
// the pen width of a width class, and drawing one segment or the whole list. The list is
// line_pattern.h; editing is line_editing.h.
#pragma once

#include "camera/display_surface.h"
#include "pattern/line_pattern.h"
#include "station/truncation.h"

constexpr Rgb kLineColour = {0, 0, 255};            // the lines as drawn and imported
constexpr Rgb kWrittenLineColour = {0, 255, 0};     // a line vector writing has exposed
constexpr Rgb kPaintedOutColour = {220, 220, 220};  // a deleted line, painted over

// Display pixel -> um from the display centre; the subtraction is made in single precision.
float pixelToMicrometresX(int x);
float pixelToMicrometresY(int y);
// um -> display pixel for drawing: the coordinate is first cut to a whole um held in 16
// bits, then scaled by the zoom and truncated.
IntPoint drawingPixel(float xUm, float yUm);
// um -> display pixel for the eraser's hit test: scaled and truncated, without the 16-bit
// whole-um step, so it can differ from the drawn pixel by one.
IntPoint hitTestPixel(float xUm, float yUm);
// width class (um) x zoom, truncated.
int penWidthPixels(int widthClass);

void drawSegment(SurfaceWindow window, const LineSegment& segment, Rgb colour);
// Every segment of the list in list order, blue.
void drawLines(SurfaceWindow window);
