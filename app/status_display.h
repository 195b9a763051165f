// The two-line status text and the other small output routines. Placeholder until the
// foundation lands.
#pragma once

int showStatus(const char* text);
int showStagePosition();
