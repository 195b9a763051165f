// Placeholder until the link lands.
#include "link/jog_pad.h"

void JogByKey(int) {}
void JogPadPress(int, int) {}
void JogPadRelease() {}
