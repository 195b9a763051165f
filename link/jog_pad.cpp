// Keyboard jog and the jog pad loop. The pad loop runs until the button-up handler sets
// the released flag, which happens inside the pumping waits between the steps.
#include "link/jog_pad.h"

#include "camera/live_view_control.h"
#include "link/stage_motion.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/status_display.h"

JogPad jogPad;

namespace {

// Windows virtual-key codes.
constexpr int kKeyPageUp = 0x21;
constexpr int kKeyPageDown = 0x22;
constexpr int kKeyLeft = 0x25;
constexpr int kKeyUp = 0x26;
constexpr int kKeyRight = 0x27;
constexpr int kKeyDown = 0x28;

constexpr double kKeyStepXYUm = 500.0;
constexpr double kKeyStepZUm = 100.0;
constexpr double kPadStepZUm = 10.0;
constexpr int kMovingRed = 255, kMovingGreen = 200, kMovingBlue = 100;

struct AxisStep {
  int axis;
  double deltaUm;
};

// The axis and signed step of pad rectangle index, in pad order.
AxisStep padStep(const JogPad& pad, int index) {
  switch (index) {
    case 0: return {0, -double(pad.stepUm)};
    case 1: return {0, double(pad.stepUm)};
    case 2: return {1, double(pad.stepUm)};
    case 3: return {1, -double(pad.stepUm)};
    case 4: return {2, kPadStepZUm};
    default: return {2, -kPadStepZUm};
  }
}

bool keyStep(int virtualKey, AxisStep& step) {
  switch (virtualKey) {
    case kKeyPageUp: step = {2, kKeyStepZUm}; return true;
    case kKeyPageDown: step = {2, -kKeyStepZUm}; return true;
    case kKeyLeft: step = {0, -kKeyStepXYUm}; return true;
    case kKeyUp: step = {1, kKeyStepXYUm}; return true;
    case kKeyRight: step = {0, kKeyStepXYUm}; return true;
    case kKeyDown: step = {1, -kKeyStepXYUm}; return true;
    default: return false;
  }
}

}  // namespace

bool PointInRect(IntPoint point, const IntRect& rect) {
  return rect.left < point.x && point.x < rect.right && rect.top < point.y && point.y < rect.bottom;
}

void JogByKey(int virtualKey) {
  if (jogPad.busy) return;
  jogPad.busy = 1;
  int liveViewWasOn = setLiveView(kLiveViewQueryNow);
  if (liveViewWasOn) setLiveView(kLiveViewOff);
  AxisStep step;
  if (keyStep(virtualKey, step)) {
    MoveAxisBy(serialLink, step.axis, step.deltaUm);
    waitResponsive(10);
    showStagePosition();
  }
  if (liveViewWasOn) setLiveView(kLiveViewOn);
  jogPad.busy = 0;
}

void JogPadPress(JogPad& pad, IntPoint point) {
  if (pad.busy) return;
  pad.released = 0;
  pad.busy = 1;
  pad.liveViewWasOn = setLiveView(kLiveViewQueryNow);
  if (pad.liveViewWasOn) setLiveView(kLiveViewOff);
  for (int i = 0; i < kJogPadRects; ++i) {
    if (!PointInRect(point, pad.rects[i])) continue;
    const IntRect& rect = pad.rects[i];
    feedbackDrawMainText(rect.left + 2, rect.top + (rect.bottom - rect.top) / 2 - 8, "moving",
                         kMovingRed, kMovingGreen, kMovingBlue);
    AxisStep step = padStep(pad, i);
    while (!pad.released) {
      MoveAxisBy(serialLink, step.axis, step.deltaUm);
      showStagePosition();
      // A closed window sends no release: the held pad ends with the program.
      if (waitResponsive(10) == kWaitClosing) break;
      if (pad.liveViewWasOn) {
        waitResponsive(10);
        setLiveView(kLiveViewOneFrame);
      }
    }
    break;
  }
  if (pad.liveViewWasOn) setLiveView(kLiveViewOn);
  waitResponsive(100);
  feedbackRedrawMainWindow();
  pad.busy = 0;
}

void JogPadRelease(JogPad& pad) { pad.released = 1; }
