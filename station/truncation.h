// Truncation of floating-point values to int that cannot overflow, for the numbers that
// come from outside (Config.txt, a line file, the board's replies) and every product made
// of them: values beyond the int range stay at its ends.
#pragma once

// Truncation toward zero to an int; values beyond the int range stay at its ends and a
// value that is not a number gives 0.
int truncatedToInt(double value);
