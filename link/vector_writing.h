// Vector writing: the lines of the LinePattern written one by one with MoveXY, the laser
// on along each line at its width's speed. Called by the "Start Writing" run.
#pragma once

#include "pattern/line_pattern.h"

// Entered from inside the writing run, which has already set writingActive and cleared
// the stop flag: no guard of its own, and a stop given before it is kept.
void StartVectorWriting(LinePattern& lines);
