// Jogging the stage: by keys (arrows move X and Y by 500 um, Page Up/Down move Z by
// 100 um) and by the jog pad, six rectangles drawn on the main window that move an axis
// step by step for as long as the left button is held on them. Owns the jog pad record;
// the moves themselves are stage_motion.h's. Painting is jog_pad_win32.cpp's.
#pragma once

#include "station/station.h"

constexpr int kJogPadRects = 6;

struct JogPad {
  int stepUm = 10;        // X and Y step of one pad cycle
  int busy = 0;           // a jog is running: keys and presses are ignored
  int liveViewWasOn = 0;  // the live view ran when the jog started
  // In main-window client pixels, in the order "-X", "+X", "+Y", "-Y", "+Z", "-Z".
  IntRect rects[kJogPadRects] = {
      {1262, 820, 1302, 850}, {1352, 820, 1392, 850}, {1307, 785, 1347, 815},
      {1307, 855, 1347, 885}, {1412, 785, 1452, 815}, {1412, 855, 1452, 885},
  };
  int released = 1;  // set by the button-up handler
};

extern JogPad jogPad;
inline constexpr const char* kJogPadCaptions[kJogPadRects] = {"-X", "+X", "+Y", "-Y", "+Z", "-Z"};

// Edges excluded: left < x < right and top < y < bottom.
bool PointInRect(IntPoint point, const IntRect& rect);
void JogByKey(int virtualKey);
// Moves the axis of the rectangle under the point until JogPadRelease.
void JogPadPress(JogPad& pad, IntPoint point);
void JogPadRelease(JogPad& pad);
