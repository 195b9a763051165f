// Which overlay layers the display shows: the "Mask" and "Mark" check boxes of the main
// window and line drawing. The check-box handlers set them; zoom, drawing and the
// writing programs read them.
#pragma once

extern int maskShown;   // 1: the imported mask layer is shown
extern int markShown;   // 1: the alignment-mark layer is shown
extern int linesShown;  // 1: line drawing is on, the vector lines are drawn
