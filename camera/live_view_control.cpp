// The live view switch: see live_view_control.h.
#include "camera/live_view_control.h"

#include "camera/live_view.h"
#include "resources/resource.h"
#include "station/feedback.h"

namespace {

int liveViewState = 0;  // 1 while timer 1 runs
int savedLiveViewState = 0;

void switchLiveViewOff() {
  savedLiveViewState = liveViewState;
  feedbackSetLiveTimer(false);
  feedbackCheckRadio(IDC_VIDEO_ON, IDC_VIDEO_OFF, IDC_VIDEO_OFF);
  liveViewState = 0;
}

void switchLiveViewOn() {
  savedLiveViewState = liveViewState;
  feedbackCheckRadio(IDC_VIDEO_ON, IDC_VIDEO_OFF, IDC_VIDEO_ON);
  resetLiveFrameErrors();
  feedbackSetLiveTimer(true);
  liveViewState = 1;
}

}  // namespace

int setLiveView(int mode) {
  switch (mode) {
    case 0: switchLiveViewOff(); break;
    case 1: switchLiveViewOn(); break;
    case 2:
      if (savedLiveViewState == 0) {
        switchLiveViewOff();
      } else {
        switchLiveViewOn();
      }
      break;
    case 3: return savedLiveViewState != 0 ? 1 : 0;
    case 4: return liveViewState;
    case 7: grabAndShowLiveFrame(); break;
    default: break;
  }
  feedbackFocusMainWindow();
  return 0;
}
