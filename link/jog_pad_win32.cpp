// Paints the jog pad on the main window: six framed rectangles with their captions.
#include "link/jog_pad_win32.h"

#include "link/jog_pad.h"

void paintJogPad(HDC dc) {
  for (int i = 0; i < kJogPadRects; ++i) {
    const IntRect& r = jogPad.rects[i];
    Rectangle(dc, r.left, r.top, r.right, r.bottom);
    RECT text = {r.left, r.top, r.right, r.bottom};
    DrawTextA(dc, kJogPadCaptions[i], -1, &text, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
}
