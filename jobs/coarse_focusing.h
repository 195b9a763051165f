// Coarse focusing: lift the stage, step it down in 100 steps of lift / 100 while the
// camera frame's sharpness is measured, stop once the sharpness has clearly passed its
// peak, and drive Z to the sharpest place. The positions it keeps and the speed and
// lower-limit flag it uses are the X axis's, while every move is made on Z: that
// crossing is how the station has always focused and is kept.
#pragma once

#include "pattern/image_buffer.h"

constexpr int kFocusSteps = 100;  // N: the lift is walked down in N steps, at most 2N

// The search ends once the peak stands clearly above the least value, the present value
// has fallen well below it, more than 3 steps have passed since it and it is usable.
bool searchPassedPeak(float best, float least, float sharpness, int step, int bestStep);
// Runs the search; the operator's stop click ends it without moving Z back.
void CoarseFocusing(double liftUm, int speedUmPerS, ImageBuffer& image);
// "Focus": laser off, illumination on, focusing with a lift of 500 um at 300 um/s.
void onFocusCommand();
