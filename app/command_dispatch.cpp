// The command switch of the main window: one case per id, one named handler per case.
#include "app/command_dispatch.h"

#include "app/responsive_wait.h"
#include "camera/live_view.h"
#include "link/jog_pad.h"

void dispatchCommand(int id) {
  switch (id) {
    default:
      break;  // unknown ids are ignored
  }
}

void onMainWindowCreated() {}

void onMainWindowDestroyed() {}

void onMainKeyDown(int virtualKey) { JogByKey(virtualKey); }

void onMainLeftButtonDown(int x, int y) { JogPadPress(x, y); }

void onMainLeftButtonUp() { JogPadRelease(); }

void onMainTimer(int timerId) {
  if (writingActive == 1 || timerId != 1) return;
  grabAndShowLiveFrame();
}
