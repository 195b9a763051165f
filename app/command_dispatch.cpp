// The command switch of the main window: one case per id, one named handler per case.
#include "app/command_dispatch.h"

#include "app/responsive_wait.h"
#include "camera/live_view.h"
#include "link/jog_pad.h"
#include "link/stage_commands.h"

void dispatchCommand(int id) {
  switch (id) {
    case 2009: onReadPositionCommand(); break;
    case 2013: onStepPlusCommand(); break;
    case 2014: onStepMinusCommand(); break;
    case 3000: onLaserOnCommand(); break;
    case 3001: onLaserOffCommand(); break;
    case 3105: onIlluminationOnCommand(); break;
    case 3106: onIlluminationOffCommand(); break;
    case 4003: onMoveXCommand(); break;
    case 4004: onMoveYCommand(); break;
    case 4005: onMoveZCommand(); break;
    case 32001: onMountCommand(); break;
    case 32002: onWaferCommand(); break;
    case 32810: onReopenControllerCommand(); break;
    default: break;  // unknown ids are ignored
  }
}

void onMainWindowCreated() {}

void onMainWindowDestroyed() {}

void onMainKeyDown(int virtualKey) { JogByKey(virtualKey); }

void onMainLeftButtonDown(int x, int y) { JogPadPress(jogPad, {x, y}); }

void onMainLeftButtonUp() { JogPadRelease(jogPad); }

void onMainTimer(int timerId) {
  if (writingActive == 1 || timerId != 1) return;
  grabAndShowLiveFrame();
}
