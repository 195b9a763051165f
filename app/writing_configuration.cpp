// The Writing Configuration dialog: see writing_configuration.h. A box whose text does not
// parse keeps its field's old value, and every box of "Set" is written back either way,
// so the dialog always shows what the program holds. Limits are enforced by clamping,
// silently.
#include "app/writing_configuration.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "app/dialog_controls.h"
#include "camera/live_view_control.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "link/stage_motion.h"
#include "pattern/line_pattern.h"
#include "pattern/pattern_stores.h"
#include "resources/resource.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/text_format.h"
#include "station/view_geometry.h"

namespace {

// GetDlgItemTextA buffers: ten characters for the block size and the laser position,
// thirty for every other box; one more for the terminator.
constexpr int kShortBoxBuffer = 11;
constexpr int kLongBoxBuffer = 31;

constexpr int kWritingAreaEntries = 10;  // "1mm" ... "10mm", index + 1 = magnification
constexpr int kFirstStepUm = 100;

constexpr int kMinCellSize = 2;  // outside block size, pattern cells
constexpr int kMaxCellSize = 10;
constexpr int kMaxLaserShift = 25000;  // um either way
constexpr double kMaxVoltage = 5.0;
constexpr int kMinInsideSpeed = 30;  // um/s
constexpr int kMinOutsideSpeed = 100;
constexpr int kMaxFillingSpeed = 800;
constexpr int kMinLineSpeed = 10;
constexpr int kMaxLineSpeed = 300;
constexpr double kMaxDefocusUm = 30.0;
// The stage's travel either way from its centre: "Go" targets and steps are kept within
// reach, so that no typed number overflows the board's step count.
constexpr double kStageTravelUm = 25000.0;

void readIntBox(int controlId, int bufferChars, int& field, int low, int high) {
  int typed = 0;
  if (std::sscanf(dialogGetText(controlId, bufferChars).c_str(), "%d", &typed) == 1)
    field = std::clamp(typed, low, high);
  dialogSetText(controlId, formatText("%d", field));
}

// Parsed as single precision ("%f"), so 2.345 is kept as the float nearest to it. "nan"
// parses but is no value a box can hold: it keeps the old one.
void readFloatBox(int controlId, double& field, double low, double high, const char* format) {
  float typed = 0.0f;
  if (std::sscanf(dialogGetText(controlId, kLongBoxBuffer).c_str(), "%f", &typed) == 1 &&
      !std::isnan(typed))
    field = std::clamp(static_cast<double>(typed), low, high);
  dialogSetText(controlId, formatText(format, field));
}

void showMagnification() {
  std::string text = formatText("%d", station.magnification);
  dialogSetText(IDC_WCFG_MAGNIFICATION, text);
  feedbackSetBoxText(Box::WritingArea, text);
}

void showCachedPosition() {
  dialogSetText(IDC_WCFG_POSITION_X, formatText("%.1lf", serialLink.positionUm[0]));
  dialogSetText(IDC_WCFG_POSITION_Y, formatText("%.1lf", serialLink.positionUm[1]));
}

void onWritingAreaChosen() {
  // A list with nothing selected (a magnification beyond 10 from Config.txt) has no size
  // to give.
  int index = dialogListSelection(IDC_WCFG_WRITING_AREA);
  if (index < 0) return;
  station.magnification = index + 1;
  showMagnification();
}

void onLineDrawingToggled() {
  linePattern.active = dialogIsChecked(IDC_WCFG_LINE_DRAWING) ? 1 : 0;
  showMagnification();
}

void onShutterToggled() { SwitchLaser(laser, dialogIsChecked(IDC_WCFG_SHUTTER) ? 1 : 0); }

// Written back with one decimal where "Set" writes two: operators know the dialog so, and
// the difference is kept. The laser goes on at the new voltage.
void onApply() {
  readFloatBox(IDC_WCFG_INSIDE_VOLTAGE, station.insideVoltage, 0.0, kMaxVoltage, "%.1f");
  SwitchLaser(laser, 1);
}

// A length in um from a box ("%lf"), clamped to +-limit; false when it does not parse
// or is not a number ("nan").
bool readLengthUm(int controlId, double limitUm, double& lengthUm) {
  double typed = 0.0;
  if (std::sscanf(dialogGetText(controlId, kLongBoxBuffer).c_str(), "%lf", &typed) != 1 ||
      std::isnan(typed))
    return false;
  lengthUm = std::clamp(typed, -limitUm, limitUm);
  return true;
}

void onStep(int axis, double direction) {
  double stepUm = 0.0;
  if (!readLengthUm(IDC_WCFG_STEP, 2 * kStageTravelUm, stepUm)) return;
  MoveAxisBy(serialLink, axis, direction * stepUm);
  showCachedPosition();
}

void onGo() {
  double xUm = 0.0;
  double yUm = 0.0;
  if (readLengthUm(IDC_WCFG_POSITION_X, kStageTravelUm, xUm) &&
      readLengthUm(IDC_WCFG_POSITION_Y, kStageTravelUm, yUm))
    MoveXY(xUm, yUm, station.writingSpeed);
}

// The zoom follows the writing area first; then the boxes in their order.
void onSet() {
  station.zoom = 1.0 / station.magnification;
  recomputeViewGeometry(station);
  readIntBox(IDC_WCFG_OUTSIDE_SUBFACTOR, kShortBoxBuffer, cellGrid.cellSize, kMinCellSize,
             kMaxCellSize);
  readIntBox(IDC_WCFG_LASER_SHIFT_X, kShortBoxBuffer, laser.laserShiftX, -kMaxLaserShift,
             kMaxLaserShift);
  readIntBox(IDC_WCFG_LASER_SHIFT_Y, kShortBoxBuffer, laser.laserShiftY, -kMaxLaserShift,
             kMaxLaserShift);
  readIntBox(IDC_WCFG_LASER_SHIFT_Z, kShortBoxBuffer, laser.laserShiftZ, -kMaxLaserShift,
             kMaxLaserShift);
  readFloatBox(IDC_WCFG_INSIDE_VOLTAGE, station.insideVoltage, 0.0, kMaxVoltage, "%.2f");
  readFloatBox(IDC_WCFG_OUTSIDE_VOLTAGE, station.outsideVoltage, 0.0, kMaxVoltage, "%.2f");
  readFloatBox(IDC_WCFG_LINE_VOLTAGE, station.lineVoltage, 0.0, kMaxVoltage, "%.2f");
  readIntBox(IDC_WCFG_INSIDE_SPEED, kLongBoxBuffer, station.insideSpeed, kMinInsideSpeed,
             kMaxFillingSpeed);
  readIntBox(IDC_WCFG_OUTSIDE_SPEED, kLongBoxBuffer, station.outsideSpeed, kMinOutsideSpeed,
             kMaxFillingSpeed);
  readIntBox(IDC_WCFG_LINE1_SPEED, kLongBoxBuffer, station.line1Speed, kMinLineSpeed,
             kMaxLineSpeed);
  readIntBox(IDC_WCFG_LINE3_SPEED, kLongBoxBuffer, station.line3Speed, kMinLineSpeed,
             kMaxLineSpeed);
  readIntBox(IDC_WCFG_LINE6_SPEED, kLongBoxBuffer, station.line6Speed, kMinLineSpeed,
             kMaxLineSpeed);
  readIntBox(IDC_WCFG_LINE10_SPEED, kLongBoxBuffer, station.line10Speed, kMinLineSpeed,
             kMaxLineSpeed);
  readFloatBox(IDC_WCFG_DEFOCUS, station.defocusUm, -kMaxDefocusUm, kMaxDefocusUm, "%.1f");
}

}  // namespace

void openWritingConfiguration() {
  if (operationRunning()) return;
  setLiveView(kLiveViewOff);
  dialogRun(IDD_WRITING_CONFIGURATION, {writingConfigurationOpened, writingConfigurationCommand});
  setLiveView(2);  // back to the state before the dialog
}

void writingConfigurationOpened() {
  dialogSetCheck(IDC_WCFG_LINE_DRAWING, linePattern.active != 0);
  std::vector<std::string> sizes;
  for (int mm = 1; mm <= kWritingAreaEntries; ++mm) sizes.push_back(formatText("%dmm", mm));
  dialogFillList(IDC_WCFG_WRITING_AREA, sizes);
  dialogSelectListEntry(IDC_WCFG_WRITING_AREA, station.magnification - 1);
  dialogSetText(IDC_WCFG_MAGNIFICATION, formatText("%d", station.magnification));
  showCachedPosition();
  dialogSetText(IDC_WCFG_STEP, formatText("%d", kFirstStepUm));
  dialogSetText(IDC_WCFG_OUTSIDE_SUBFACTOR, formatText("%d", cellGrid.cellSize));
  dialogSetText(IDC_WCFG_LASER_SHIFT_X, formatText("%d", laser.laserShiftX));
  dialogSetText(IDC_WCFG_LASER_SHIFT_Y, formatText("%d", laser.laserShiftY));
  dialogSetText(IDC_WCFG_LASER_SHIFT_Z, formatText("%d", laser.laserShiftZ));
  dialogSetText(IDC_WCFG_LINE_VOLTAGE, formatText("%.2f", station.lineVoltage));
  dialogSetText(IDC_WCFG_INSIDE_VOLTAGE, formatText("%.2f", station.insideVoltage));
  dialogSetText(IDC_WCFG_OUTSIDE_VOLTAGE, formatText("%.2f", station.outsideVoltage));
  dialogSetText(IDC_WCFG_INSIDE_SPEED, formatText("%d", station.insideSpeed));
  dialogSetText(IDC_WCFG_OUTSIDE_SPEED, formatText("%d", station.outsideSpeed));
  dialogSetText(IDC_WCFG_LINE1_SPEED, formatText("%d", station.line1Speed));
  dialogSetText(IDC_WCFG_LINE3_SPEED, formatText("%d", station.line3Speed));
  dialogSetText(IDC_WCFG_LINE6_SPEED, formatText("%d", station.line6Speed));
  dialogSetText(IDC_WCFG_LINE10_SPEED, formatText("%d", station.line10Speed));
  dialogSetText(IDC_WCFG_DEFOCUS, formatText("%.1f", station.defocusUm));
}

void writingConfigurationCommand(int controlId) {
  // A click during one of the dialog's own moves is ignored, as in the main window; "Done"
  // stays live.
  if (operationRunning() && controlId != IDC_WCFG_DONE) return;
  switch (controlId) {
    case IDC_WCFG_WRITING_AREA: onWritingAreaChosen(); break;  // any notification of the list
    case IDC_WCFG_LINE_DRAWING: onLineDrawingToggled(); break;
    case IDC_WCFG_SHUTTER: onShutterToggled(); break;
    case IDC_WCFG_APPLY: onApply(); break;
    case IDC_WCFG_STEP_MINUS_X: onStep(0, -1.0); break;
    case IDC_WCFG_STEP_PLUS_X: onStep(0, 1.0); break;
    case IDC_WCFG_STEP_MINUS_Y: onStep(1, -1.0); break;
    case IDC_WCFG_STEP_PLUS_Y: onStep(1, 1.0); break;
    case IDC_WCFG_GO: onGo(); break;
    case IDC_WCFG_SET: onSet(); break;
    case IDC_WCFG_DONE: dialogEnd(0); break;
    default: break;  // the boxes' own notifications
  }
}
