// Jogging the stage by keys and by the jog pad drawn on the main window.
// Placeholder until the link lands.
#pragma once

void JogByKey(int virtualKey);
void JogPadPress(int x, int y);
void JogPadRelease();
