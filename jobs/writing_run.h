// The writing run that "Start Writing" starts, the trip to the writing place and back of
// "Go to Writing", and Enter in the Dx and Dy boxes. This module owns the frame of a run:
// its guards, the remembered stage place, the approach with the backlash steps, the
// button texts and the return; the lines and the raster pattern are written by
// jobs/vector_writing.h and jobs/raster_writing.h.
#pragma once

void onStartWritingCommand();  // 2202 "Start Writing" (reads "Stop" during a run)
void onGoToWritingCommand();   // 2205 "Go to Writing" / "Cancel writing"
void onApplyDxCommand();       // 4006, Enter in Dx
void onApplyDyCommand();       // 4007, Enter in Dy
