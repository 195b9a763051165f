// The status line and the stage position boxes. Placeholder until the foundation lands.
#pragma once

// Paints text (and the previous line under it) over the "Information" box; always 1.
int showStatus(const char* text);
// Writes the cached stage position, truncated to whole micrometres, into the X, Y, Z boxes.
void showStagePosition();
