// The Device Configuration dialog: see device_configuration.h. "UP" and "DOWN" move axis 0
// while the answer box reads "Z=", and "Set" sends the command box rather than closing:
// both are the dialog as the station's operators know it.
#include "app/device_configuration.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "app/dialog_controls.h"
#include "camera/Basler_camera.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "link/stage_motion.h"
#include "resources/resource.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/text_format.h"

namespace {

constexpr int kShortBoxBuffer = 11;  // ten characters and the terminator
constexpr int kCommandBoxBuffer = 31;
constexpr int kMinPort = 1;
constexpr int kMaxPort = 30;
constexpr double kTestMoveUm = 100.0;
constexpr int kStageTravelUm = 25000;  // either way from the centre
constexpr int kZeroSettleMs = 10;
constexpr int kStandaLists[] = {IDC_DCFG_STANDA_MOTOR1, IDC_DCFG_STANDA_MOTOR2,
                                IDC_DCFG_STANDA_MOTOR3};
const std::vector<std::string> kAxisEntries = {"None", "X", "Y", "Z"};  // index = axis value

int* standaAxis(int motor) {
  int* axes[] = {&station.standaMotor1Axis, &station.standaMotor2Axis, &station.standaMotor3Axis};
  return axes[motor];
}

void showPortState() { dialogSetCheck(IDC_DCFG_PORT_CONNECTED, serialLink.failed == 0); }

// The cached first stage position, under the name of the focus axis.
void showTestPosition() {
  dialogSetText(IDC_DCFG_ANSWER, formatText("Z=%.1f", serialLink.positionUm[0]));
}

void onPortInitialize() {
  std::string text = dialogGetText(IDC_DCFG_PORT, kShortBoxBuffer);
  int typed = 0;
  if (std::sscanf(text.c_str(), "%d", &typed) == 1)
    serialLink.comPort = std::clamp(typed, kMinPort, kMaxPort);
  if (!text.empty()) OpenSerialLink(serialLink, true);
  showPortState();
}

void onStandaInitialize() {
  for (int motor = 0; motor < 3; ++motor) {
    // A list left without a selection (an axis beyond 3 from Config.txt) keeps its value.
    int index = dialogListSelection(kStandaLists[motor]);
    if (index >= 0) *standaAxis(motor) = index;
  }
  CloseSerialLink(serialLink);
  serialLink.positionUm[0] = 0.0;
  if (OpenSerialLink(serialLink, true) == 0) {
    feedbackMessageBox("No devices found", "Scanner Error", MessageKind::Ok);
  } else {
    feedbackMessageBox("Standa scanner Initialized", "Scanner", MessageKind::Ok);
  }
}

// ZeroAxis raises both limit flags of each axis on purpose: the next move of X or Y after
// a new zero point is refused.
void onZeroPoint() {
  ZeroAxis(serialLink, 0);
  waitResponsive(kZeroSettleMs);
  ZeroAxis(serialLink, 1);
  waitResponsive(kZeroSettleMs);
  showStagePosition();
  waitResponsive(kZeroSettleMs);
}

void onTestMove(double deltaUm) {
  MoveAxisBy(serialLink, 0, deltaUm);
  showTestPosition();
}

void onMoveTo() {
  std::string text = dialogGetText(IDC_DCFG_MOVE_TO_BOX, kShortBoxBuffer);
  if (text.empty()) return;
  int targetUm = 0;
  // Kept within the travel, so that no typed number overflows the board's step count.
  if (std::sscanf(text.c_str(), "%d", &targetUm) == 1)
    MoveAxisAndWait(serialLink, 2, std::clamp(targetUm, -kStageTravelUm, kStageTravelUm));
  showTestPosition();
}

void onSendCommand() {
  std::string text = dialogGetText(IDC_DCFG_COMMAND, kCommandBoxBuffer);
  if (text.empty()) return;
  int sent = SendCommand(serialLink, text.c_str());
  showTestPosition();
  if (sent == 0) feedbackMessageBox("Fail to send command", "Arduino Error", MessageKind::Ok);
}

void onReceive() {
  if (auto answer = ReadReplyText(serialLink)) dialogSetText(IDC_DCFG_ANSWER, *answer);
}

void onCameraInitialize() {
  CameraReconnect(camera);
  CameraSetup(camera, 1);
  CameraSetup(camera, 4);
  dialogSetCheck(IDC_DCFG_CAMERA_CONNECTED, camera.connected != 0);
}

// A raw command typed here may have raised the laser without the program knowing, so
// the voltage goes to 0 on the board even when the program holds it at 0 already.
void onClose() {
  bool voltageHeldAtZero = laser.laserVoltage == 0.0;
  SwitchLaser(laser, 0);
  if (voltageHeldAtZero) SetAnalogOutput(serialLink, laser.laserChannel, 0);
  dialogEnd(0);
}

}  // namespace

void openDeviceConfiguration() {
  if (operationRunning()) return;
  dialogRun(IDD_DEVICE_CONFIGURATION, {deviceConfigurationOpened, deviceConfigurationCommand});
}

void deviceConfigurationOpened() {
  dialogSetText(IDC_DCFG_PORT, formatText("%d", serialLink.comPort));
  for (int motor = 0; motor < 3; ++motor) {
    dialogFillList(kStandaLists[motor], kAxisEntries);
    dialogSelectListEntry(kStandaLists[motor], *standaAxis(motor));
  }
  showPortState();
  dialogSetCheck(IDC_DCFG_CAMERA_CONNECTED, camera.connected != 0);
}

void deviceConfigurationCommand(int controlId) {
  // A click during one of the dialog's own moves is ignored, as in the main window;
  // "Close", which darkens the laser, stays live.
  if (operationRunning() && controlId != IDC_DCFG_CLOSE) return;
  switch (controlId) {
    case IDC_DCFG_PORT_CONNECTED:
    case IDC_DCFG_PORT_INITIALIZE: onPortInitialize(); break;
    case IDC_DCFG_STANDA_CONNECTED:
    case IDC_DCFG_STANDA_INITIALIZE: onStandaInitialize(); break;
    case IDC_DCFG_ZERO_POINT: onZeroPoint(); break;
    case IDC_DCFG_UP: onTestMove(kTestMoveUm); break;
    case IDC_DCFG_DOWN: onTestMove(-kTestMoveUm); break;
    case IDC_DCFG_MOVE_TO: onMoveTo(); break;
    case IDC_DCFG_SEND:
    case IDC_DCFG_SET: onSendCommand(); break;
    case IDC_DCFG_RECEIVE: onReceive(); break;
    case IDC_DCFG_CAMERA_CONNECTED:
    case IDC_DCFG_CAMERA_INITIALIZE: onCameraInitialize(); break;
    case IDC_DCFG_CLOSE: onClose(); break;
    case IDC_DCFG_CLOSE_PORT: CloseSerialLink(serialLink); break;
    default: break;  // the boxes' and lists' own notifications
  }
}
