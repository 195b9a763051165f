// The vector lines: the one LinePattern record (segments in micrometres from the display
// centre, the pointer-editing state and the text of the line file) and the "lines" layer
// switch. Editing, drawing and the file live in the line modules; writing in link/.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "station/station.h"

struct LineSegment {
  float x1;  // um from the display centre, + to the right
  float y1;  // um from the display centre, + downwards on the display
  float x2;
  float y2;
  int32_t width;  // width class in um: 1, 3, 6 or 10 (a file may hold any integer)
};
static_assert(sizeof(LineSegment) == 20);

struct LinePattern {
  int32_t active = 1;  // "Line Drawing mode": pointer editing and vector writing act only when 1
  int32_t widthClass = 3;
  int32_t erasing = 0;        // 1: a left click deletes the line under the pointer
  bool drawing = false;       // a chain of segments is being drawn
  IntPoint anchor = {0, 0};   // display pixel where the next segment starts
  IntPoint current = {0, 0};  // display pixel of the rubber-band end
  std::vector<LineSegment> segments;
  std::string text;  // the file text built for saving
};

extern LinePattern linePattern;
extern int linesEnabled;  // the "lines" check box: lines drawn, and written by "Start Writing"
