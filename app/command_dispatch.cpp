// The command switch of the main window: one case per id, one named handler per case.
#include "app/command_dispatch.h"

#include "app/responsive_wait.h"
#include "camera/camera_commands.h"
#include "camera/live_view.h"
#include "link/jog_pad.h"

void dispatchCommand(int id) {
  switch (id) {
    case 2102: onCameraCapture(); break;
    case 2150: onWideView(); break;
    case 32804: onSaveImage(); break;
    case 32809: onCameraAutoSetting(); break;
    case 32817: onCameraBlueOnly(); break;
    case 32830: onCameraManualEntry(); break;
    default: break;  // unknown ids are ignored
  }
}

void onMainWindowCreated() { showFirstCameraFrame(); }

void onMainWindowDestroyed() {}

void onMainKeyDown(int virtualKey) { JogByKey(virtualKey); }

void onMainLeftButtonDown(int x, int y) { JogPadPress(x, y); }

void onMainLeftButtonUp() { JogPadRelease(); }

void onMainTimer(int timerId) {
  if (writingActive == 1 || timerId != 1) return;
  grabAndShowLiveFrame();
}
