// What every operation tells the operator on the main window: the two-line status
// text, the "Progress" box, the stage position boxes and the time estimate. It owns the
// status buffers and the last shown position; the focus measure is shown by focusing.
#pragma once

#include <string>

constexpr int kStatusLineBytes = 208;

extern char statusLine[kStatusLineBytes];          // newest status text
extern char previousStatusLine[kStatusLineBytes];  // the one before it
extern int shownPositionUm[3];                     // X, Y, Z last written to the boxes

// Paints text (padded with blanks so it covers a longer earlier line) over the
// "Information" box, with the previous line under it. Returns 1.
int showStatus(const std::string& text);
// Sets the text of the "Progress" box. Returns 1.
int showProgress(const std::string& text);
// Writes a stage position (X, Y, Z), truncated to whole um, to the position boxes; the
// link shows its cached position through showStagePosition (stage_motion.h).
void showPosition(const double positionUm[3]);
// Writes "elapsed (estimated) min." into the "Time (estimated)" box; the estimate counts
// the writing area's cells in blocks of cellSize x cellSize (the coarse raster's factor).
void showTimeEstimate(int cellSize);
