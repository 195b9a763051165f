// The command switch of the main window: one case per id, one named handler per case.
#include "app/command_dispatch.h"

#include "app/device_configuration.h"
#include "app/shell_commands.h"
#include "app/writing_configuration.h"
#include "camera/camera_commands.h"
#include "camera/live_view.h"
#include "camera/live_view_control.h"
#include "jobs/coarse_focusing.h"
#include "jobs/raster_writing.h"
#include "jobs/test_writing.h"
#include "jobs/writing_run.h"
#include "link/jog_pad.h"
#include "link/stage_commands.h"
#include "pattern/display_layers.h"
#include "pattern/line_commands.h"
#include "pattern/line_editing.h"
#include "pattern/line_pattern.h"
#include "pattern/pattern_commands.h"
#include "pattern/pattern_stores.h"
#include "resources/resource.h"
#include "station/responsive_wait.h"
#include "station/system_services.h"
#include "station/view_geometry.h"

namespace {

// Commands that stay live while an operation runs, even inside another command's wait:
// they only look, save or darken (the laser off, the lamp, saving the picture, the camera's
// colour choices), or change nothing. Every other command would move the stage, expose or
// change what is being written, and is ignored until the operation ends.
bool liveDuringOperation(int id) {
  switch (id) {
    case IDC_LASER_OFF:
    case IDC_ILLUMINATION_ON:
    case IDC_ILLUMINATION_OFF:
    case IDM_SAVE_IMAGE:
    case IDM_CAMERA_AUTO_SETTING:
    case IDM_CAMERA_BLUE_ONLY:
    case IDM_START_VECTOR_WRITING:
    case IDM_STOP: return true;
    default: return false;
  }
}

}  // namespace

void dispatchCommand(int id) {
  if (operationRunning() && !liveDuringOperation(id)) return;
  switch (id) {
    case IDC_ZOOM_IN: changeZoom(1); break;
    case IDC_ZOOM_OUT: changeZoom(-1); break;
    case IDC_SHOW: changeZoom(0); break;
    case IDC_ALL: changeZoom(10); break;
    case IDC_VIDEO_ON: setLiveView(1); break;
    case IDC_VIDEO_OFF: setLiveView(0); break;
    case IDC_BLINK: blinkLaser(); break;
    case IDC_CENTER_WRITING_ONLY: toggleCheckBox(centerWritingOnly, IDC_CENTER_WRITING_ONLY); break;
    case IDC_MASK_LAYER: toggleCheckBox(maskImage.valid, IDC_MASK_LAYER); break;
    case IDC_LINES_LAYER: toggleCheckBox(linesEnabled, IDC_LINES_LAYER); break;
    case IDC_MARK_LAYER: toggleCheckBox(alignmentMarkImage.valid, IDC_MARK_LAYER); break;
    case IDC_POSITION_READ: onReadPositionCommand(); break;
    case IDC_STEP_PLUS: onStepPlusCommand(); break;
    case IDC_STEP_MINUS: onStepMinusCommand(); break;
    case IDC_LASER_ON: onLaserOnCommand(); break;
    case IDC_LASER_OFF: onLaserOffCommand(); break;
    case IDC_ILLUMINATION_ON: onIlluminationOnCommand(); break;
    case IDC_ILLUMINATION_OFF: onIlluminationOffCommand(); break;
    case IDC_MOVE_X: onMoveXCommand(); break;
    case IDC_MOVE_Y: onMoveYCommand(); break;
    case IDC_MOVE_Z: onMoveZCommand(); break;
    case IDC_MOUNT: onMountCommand(); break;
    case IDC_START_WRITING: onStartWritingCommand(); break;
    case IDC_GO_TO_WRITING: onGoToWritingCommand(); break;
    case IDC_APPLY_DX: onApplyDxCommand(); break;
    case IDC_APPLY_DY: onApplyDyCommand(); break;
    case IDC_WAFER: onWaferCommand(); break;
    case IDM_REOPEN_CONTROLLER: onReopenControllerCommand(); break;
    case IDM_WRITING_CONFIGURATION: openWritingConfiguration(); break;
    case IDM_DEVICE_CONFIGURATION: openDeviceConfiguration(); break;
    case IDM_START_VECTOR_WRITING:  // lines are written by "Start Writing" when "lines" is checked
    case IDM_STOP:                  // a click during the run stops it, through the responsive wait
      break;
    case IDC_CAMERA_CAPTURE: onCameraCapture(); break;
    case IDC_WIDE_VIEW: onWideView(); break;
    case IDM_SAVE_IMAGE: onSaveImage(); break;
    case IDM_CAMERA_AUTO_SETTING: onCameraAutoSetting(); break;
    case IDM_CAMERA_BLUE_ONLY: onCameraBlueOnly(); break;
    case IDM_APPLY_GAIN_EXPOSURE: onCameraManualEntry(); break;
    case IDC_ALIGN_MARK: onAlignMarkCommand(); break;
    case IDC_SHOW_MASK_FILE: onShowMaskFileCommand(); break;
    case IDM_IMPORT_IMAGE: onImportImageCommand(); break;
    case IDM_IMPORT_ALIGNMENT_MARK: onImportAlignmentMarkCommand(); break;
    case IDM_MASK_PATTERN: onMaskPatternCommand(); break;
    case IDM_SHOW_TARGET_PATTERN: onShowTargetPatternCommand(); break;
    case IDM_FIND_EDGES: onFindEdgesCommand(); break;
    case IDM_GROUPING: onGroupingCommand(); break;
    case IDM_SIMULATE_WRITING: onSimulateWritingCommand(); break;
    case IDM_FINAL_PATTERN: onFinalPatternCommand(); break;
    case IDM_SHOW_EXPOSURE_PICTURE: onShowExposurePictureCommand(); break;
    case IDM_ERASE_MASK_PATTERN: onEraseMaskPatternCommand(); break;

    case IDC_LINE_WIDTH_1: setWidthClass(1); break;
    case IDC_LINE_WIDTH_3: setWidthClass(3); break;
    case IDC_LINE_WIDTH_6: setWidthClass(6); break;
    case IDC_LINE_WIDTH_10: setWidthClass(10); break;
    case IDC_LINE_ERASE: startErasing(); break;
    case IDM_IMPORT_LINE_PATTERNS: onImportLinePatternsCommand(); break;
    case IDM_DELETE_ALL_LINES: onDeleteAllLinesCommand(); break;
    case IDC_FOCUS: onFocusCommand(); break;
    case IDM_PR_TEST: onPRTestCommand(); break;
    case IDM_BLACK_TAPE_TEST: onBlackTapeTestCommand(); break;
    case IDM_LONG_STROKE_TEST: onLongStrokeTestCommand(); break;
    default: break;  // unknown ids are ignored
  }
}

void onMainWindowCreated() {
  showFirstStates();
  showBlinkDuration();
  setLiveView(0);
}

void onMainWindowDestroyed() {
  setLiveView(0);
  systemSleepMs(100);
}

void onMainKeyDown(int virtualKey) {
  if (operationRunning()) return;
  JogByKey(virtualKey);
}

void onMainLeftButtonDown(int x, int y) {
  if (operationRunning()) return;
  JogPadPress(jogPad, {x, y});
}

void onMainLeftButtonUp() { JogPadRelease(jogPad); }

void onMainTimer(int timerId) {
  if (writingActive == 1 || timerId != 1) return;
  grabAndShowLiveFrame();
}
