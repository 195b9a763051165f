// Handlers of the stage and switch commands. Position boxes are parsed with "%lf" from at
// most 10 characters and clamped to the stage travel; text that does not parse skips the
// move but not the waits and the position display that follow it.
#include "link/stage_commands.h"

#include <algorithm>
#include <cstdio>

#include "camera/live_view_control.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"

namespace {

constexpr double kBoxTravelUm = 25000.0;
constexpr double kStepButtonUm = 2.0;
constexpr int kMountRadio = 32001;
constexpr int kWaferRadio = 32002;
constexpr int kPositionBoxChars = 11;  // 10 characters and the terminator

void moveAxisToBoxValue(int axis, Box box) {
  double targetUm = 0.0;
  if (std::sscanf(feedbackGetBoxText(box, kPositionBoxChars).c_str(), "%lf", &targetUm) != 1)
    return;
  // The live view's grabs would stall the move's wait.
  int liveViewWasOn = setLiveView(kLiveViewQueryNow);
  if (liveViewWasOn) setLiveView(kLiveViewOff);
  MoveAxisAndWait(serialLink, axis, std::clamp(targetUm, -kBoxTravelUm, kBoxTravelUm));
  if (liveViewWasOn) setLiveView(kLiveViewOn);
}

}  // namespace

void onLaserOnCommand() { SwitchLaser(laser, 1); }
void onLaserOffCommand() { SwitchLaser(laser, 0); }
void onIlluminationOnCommand() { SwitchIllumination(1); }
void onIlluminationOffCommand() { SwitchIllumination(0); }

void onReadPositionCommand() {
  QueryAxisPosition(serialLink, 0);
  QueryAxisPosition(serialLink, 1);
  showStagePosition();
  feedbackFocusMainWindow();
}

void onStepPlusCommand() {
  MoveAxisBy(serialLink, 0, kStepButtonUm);
  showStagePosition();
  waitResponsive(10);
  feedbackFocusMainWindow();
}

void onStepMinusCommand() {
  MoveAxisBy(serialLink, 0, -kStepButtonUm);
  showStagePosition();
  feedbackFocusMainWindow();
}

void onMoveXCommand() {
  moveAxisToBoxValue(0, Box::PositionX);
  waitResponsive(200);
  QueryAxisPosition(serialLink, 0);
  showStagePosition();
  feedbackFocusMainWindow();
}

void onMoveYCommand() {
  moveAxisToBoxValue(1, Box::PositionY);
  waitResponsive(200);
  QueryAxisPosition(serialLink, 1);
  showStagePosition();
  waitResponsive(100);
  feedbackFocusMainWindow();
}

void onMoveZCommand() {
  moveAxisToBoxValue(2, Box::PositionZ);
  showStagePosition();
  feedbackFocusMainWindow();
}

void onMountCommand() {
  feedbackCheckRadio(kMountRadio, kWaferRadio, kMountRadio);
  if (station.zLifted == 0) {
    MoveAxisBy(serialLink, 2, station.zLiftUm);
    station.zLifted = 1;
  }
  feedbackFocusMainWindow();
}

void onWaferCommand() {
  feedbackCheckRadio(kMountRadio, kWaferRadio, kWaferRadio);
  if (station.zLifted == 1) {
    MoveAxisBy(serialLink, 2, -station.zLiftUm);
    station.zLifted = 0;
  }
  feedbackFocusMainWindow();
}

void onReopenControllerCommand() {
  if (OpenSerialLink(serialLink, true) == 0)
    feedbackMessageBox("No devices found", "Scanner Error", MessageKind::Ok);
}
