// The writing run and the writing place: see writing_run.h.
#include "jobs/writing_run.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

#include "camera/camera_commands.h"
#include "camera/live_view_control.h"
#include "camera/picture_files.h"
#include "jobs/exposure_record.h"
#include "jobs/raster_writing.h"
#include "jobs/vector_writing.h"
#include "jobs/writing_condition.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "pattern/display_layers.h"
#include "pattern/line_pattern.h"
#include "pattern/pattern_stores.h"
#include "resources/resource.h"
#include "station/data_paths.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/system_services.h"
#include "station/view_geometry.h"

namespace {

constexpr double kOffsetLimitUm = 300.0;
constexpr int kOffsetBoxChars = 11;  // ten characters and the terminator
constexpr double kBacklashStepUm = 2.0;
constexpr int kZAxis = 2;

// Parses a Dx or Dy box into offset, clamped; text that does not parse keeps the old value.
void readOffsetBox(Box box, double& offsetUm) {
  double typed = 0.0;
  if (std::sscanf(feedbackGetBoxText(box, kOffsetBoxChars).c_str(), "%lf", &typed) == 1)
    offsetUm = std::clamp(typed, -kOffsetLimitUm, kOffsetLimitUm);
}

// Saves the picture and the writing condition of the run, remembers where the stage is
// and darkens the station before anything moves.
void prepareRun() {
  SaveViewImage(dataPaths, SurfaceWindow::Main);
  writeWritingCondition();
  setLiveView(kLiveViewOff);
  station.startTick = static_cast<int>(static_cast<uint32_t>(systemTickMs()));
  station.stageX = QueryAxisPosition(serialLink, 0);
  station.stageY = QueryAxisPosition(serialLink, 1);
  // The focus height is remembered from the link's first cached position, as the station
  // has always done; the writing place is reached relative to it.
  station.stageZ = serialLink.positionUm[0];
  SwitchIllumination(0);
  SwitchLaser(laser, 0);
}

// Down, up, down, up by 2 um: the Z screw ends every approach from the same side.
void takeUpZBacklash() {
  for (int i = 0; i < 2; ++i) {
    MoveAxisBy(serialLink, kZAxis, -kBacklashStepUm);
    MoveAxisBy(serialLink, kZAxis, kBacklashStepUm);
  }
}

// The exposure picture lands beside the run's writing-condition record, under its number.
void saveExposurePicture() {
  ensureRunFolder(dataPaths, 0);
  const int number = static_cast<int>(static_cast<uint32_t>(writingConditionCounter) - 1u);
  const std::filesystem::path path =
      dataPaths.runFolder / ("exposure(" + std::to_string(number) + ").png");
  if (recordExposurePicture(path, StageXForColumn(0, 1), StageYForRow(0, 1), station.magnification))
    dataPaths.latestExposurePicture = path;
}

bool stopWasRequested() { return station.stopRequested == 1; }

void moveToOffsetPlace() {
  MoveXY(laser.laserShiftX + station.offsetX, laser.laserShiftY + station.offsetY,
         station.writingSpeed);
}

void applyOffset(Box box, double& offsetUm, int axis) {
  if (operationRunning()) return;
  readOffsetBox(box, offsetUm);
  station.moveBusy = 1;
  if (station.offsetMode == 1)
    moveToOffsetPlace();
  else
    MoveAxisBy(serialLink, axis, offsetUm);
  station.moveBusy = 0;
  takeIlluminatedSnapshot();
}

}  // namespace

void onStartWritingCommand() {
  if (writingActive == 1 || station.moveBusy == 1) return;
  station.moveBusy = 1;
  writingActive = 1;
  station.stopRequested = 0;

  if (station.offsetMode == 1) {
    // The stage already waits at the writing place: only the offsets are taken anew.
    readOffsetBox(Box::Dx, station.offsetX);
    readOffsetBox(Box::Dy, station.offsetY);
  } else {
    prepareRun();
  }
  feedbackSetButtonText(IDC_START_WRITING, "Stop");
  feedbackSetButtonText(IDC_GO_TO_WRITING, "Go to Writing");
  showStatus("Writing...");
  waitResponsive(10);
  changeZoom(10);

  MoveXY(laser.laserShiftX + station.stageX, laser.laserShiftY + station.stageY,
         station.writingSpeed);
  MoveAxisAndWait(serialLink, kZAxis, station.stageZ + laser.laserShiftZ);
  takeUpZBacklash();

  if (!stopWasRequested() && linesEnabled == 1) {
    StartVectorWriting(linePattern);
    writingActive = 1;  // the run goes on until the stage is back
  }
  if (!stopWasRequested() && (maskImage.valid != 0 || alignmentMarkImage.valid != 0)) {
    StartRasterWriting();
    writingActive = 1;
  }
  // A stopped run ends as a finished one: the laser is already off, the stage goes back.
  SwitchLaser(laser, 0);

  MoveAxisAndWait(serialLink, kZAxis, station.stageZ);
  MoveXY(station.stageX, station.stageY, station.writingSpeed);
  saveExposurePicture();

  showProgress("All Writings finished");
  writingActive = 0;
  feedbackSetButtonText(IDC_START_WRITING, "Start Writing");
  feedbackFocusMainWindow();
  station.offsetMode = 0;
  station.moveBusy = 0;
}

void onGoToWritingCommand() {
  if (operationRunning()) return;
  station.moveBusy = 1;
  if (station.offsetMode == 0) {
    feedbackSetButtonText(IDC_GO_TO_WRITING, "Cancel writing");
    prepareRun();
    moveToOffsetPlace();
    MoveAxisAndWait(serialLink, kZAxis, station.stageZ + station.zLiftUm);
    takeUpZBacklash();
    station.offsetMode = 1;
    station.moveBusy = 0;
    takeIlluminatedSnapshot();
    return;
  }
  feedbackSetButtonText(IDC_GO_TO_WRITING, "Go to Writing");
  MoveXY(station.stageX, station.stageY, station.writingSpeed);
  MoveAxisAndWait(serialLink, kZAxis, station.stageZ);
  station.offsetMode = 0;
  station.moveBusy = 0;
}

void onApplyDxCommand() { applyOffset(Box::Dx, station.offsetX, 0); }
void onApplyDyCommand() { applyOffset(Box::Dy, station.offsetY, 1); }
