// Vector writing: the lines of the LinePattern written one by one with MoveXY, the laser
// voltage up along each line at its width's speed and kept up through lines that touch.
// Called by the "Start Writing" run; saves the list as the next line file afterwards.
#pragma once

#include "pattern/line_pattern.h"

// Entered from inside the writing run, which has already set writingActive and cleared
// the stop flag: no guard of its own, and a stop given before it is kept (nothing is
// written then). Writes only while the line flag (lines.active) is 1.
void StartVectorWriting(LinePattern& lines);
// Writes every line in list order; a stop is honoured at the end of a chain of lines.
void WriteLines(LinePattern& lines);

// The stage position of a line point: the run's remembered stage position plus the
// operator's offset, the point cut to whole um (its y runs against the stage's Y), plus
// the laser shift.
double lineStageX(float xUm);
double lineStageY(float yUm);
