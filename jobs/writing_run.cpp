// The writing run and the writing place: see writing_run.h.
#include "jobs/writing_run.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

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
#include "pattern/field_display.h"
#include "pattern/field_plan.h"
#include "pattern/layout_raster.h"
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
constexpr uint64_t kFieldSettleMs = 5000;
constexpr int kFieldSettleSliceMs = 10;

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

// True when the run writes the held layout field by field.
bool writesFields() { return maskImage.valid != 0 && layoutNeedsFields(heldLayout); }

// The exposure picture lands beside the run's writing-condition record, under its number.
// It covers the writing area, or after a field run the whole field grid: a square of the
// grid's longer side whose top-left cell is the first field's, at the same pixels per cell.
void saveExposurePicture(bool fields) {
  ensureRunFolder(dataPaths, 0);
  const int number = static_cast<int>(static_cast<uint32_t>(writingConditionCounter) - 1u);
  const std::filesystem::path path =
      dataPaths.runFolder / ("exposure(" + std::to_string(number) + ").png");
  double cell0X = StageXForColumn(0, 1), cell0Y = StageYForRow(0, 1);
  int cells = kPatternSide;
  if (fields) {
    const FieldPlan plan = planFields(heldLayout, fieldOverlapUm);
    const int step = kPatternSide - plan.overlapCells;
    cells = std::max(plan.columns, plan.rows) * step + plan.overlapCells;
    const LayoutField& topLeft = plan.fields.front();
    cell0X += topLeft.offsetXUm;
    cell0Y += topLeft.offsetYUm - (cells - kPatternSide) * heldLayout.cellUm;
  }
  if (recordExposurePicture(path, cell0X, cell0Y, station.magnification, cells))
    dataPaths.latestExposurePicture = path;
}

// A layout is held at the magnification it was imported at: written at another, every
// shape would come out at the wrong size. The run refuses and says why.
bool layoutScaleMatches() {
  if (heldLayout.widthCells == 0 || maskImage.valid == 0 ||
      heldLayout.cellUm == station.magnification)
    return true;
  char text[200];
  std::snprintf(text, sizeof text,
                "The layout was imported at magnification %g and the magnification is now %d. "
                "Import the layout again to write it.",
                heldLayout.cellUm, station.magnification);
  feedbackMessageBox(text, "Start Writing", MessageKind::Ok);
  return false;
}

bool stopWasRequested() { return station.stopRequested == 1; }

// The move to a field's place ends when both axes report it: a straight move's wait ends
// on its planned time, and a field's first stroke must start from the field's place,
// however far the last field lay. A stop or a time-out ends the wait as well.
void moveToField(double xUm, double yUm) {
  MoveXY(xUm, yUm, station.writingSpeed);
  const uint64_t startMs = systemTickMs();
  while (systemTickMs() - startMs < kFieldSettleMs) {
    const bool there = std::fabs(QueryAxisPosition(serialLink, 0) - xUm) < 1.0 &&
                       std::fabs(QueryAxisPosition(serialLink, 1) - yUm) < 1.0;
    if (there || waitResponsive(kFieldSettleSliceMs) != kWaitTimeUp) break;
  }
  serialLink.positionUm[0] = xUm;
  serialLink.positionUm[1] = yUm;
}

// The held layout, larger than one writing area, written field by field: each field's
// cells become the mask picture and the target, the stage goes to the field's offset
// from the writing reference (back at the writing height after a defocused pass), and
// the raster engine writes it; the progress counts every field. A stop ends the run
// after the stroke under way. The mask picture and the mark layer are given back.
void writeLayoutFields() {
  const FieldPlan plan = planFields(heldLayout, fieldOverlapUm);
  const size_t pictureBytes = static_cast<size_t>(kPatternSide) * kPatternSide * 4;
  const std::vector<uint8_t> heldPicture(maskImage.pixels, maskImage.pixels + pictureBytes);
  const int32_t markShown = alignmentMarkImage.valid;
  alignmentMarkImage.valid = 0;  // only the layout is written, field by field
  const double writingZ = station.stageZ + laser.laserShiftZ;
  fieldShare = FieldShare();
  fieldShare.cellsInRun = std::max(plan.darkCells, 1);
  for (size_t i = 0; i < plan.fields.size() && !stopWasRequested(); ++i) {
    const LayoutField& field = plan.fields[i];
    char text[64];
    std::snprintf(text, sizeof text, "Writing field %d of %d", static_cast<int>(i) + 1,
                  static_cast<int>(plan.fields.size()));
    showLayoutFields(heldLayout, plan, static_cast<int>(i));
    showStatus(text);
    drawFieldPicture(heldLayout, field, maskImage);
    fieldShare.offsetXUm = field.offsetXUm;
    fieldShare.offsetYUm = field.offsetYUm;
    moveToField(laser.laserShiftX + station.stageX + field.offsetXUm,
                laser.laserShiftY + station.stageY + field.offsetYUm);
    if (serialLink.positionUm[kZAxis] != writingZ) {
      MoveAxisAndWait(serialLink, kZAxis, writingZ);
      takeUpZBacklash();
    }
    if (stopWasRequested()) break;
    StartRasterWriting();
    fieldShare.cellsBefore = station.doneCells;
  }
  fieldShare = FieldShare();
  alignmentMarkImage.valid = markShown;
  std::copy(heldPicture.begin(), heldPicture.end(), maskImage.pixels);
  showLayoutFields(heldLayout, plan, -1);
}

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
  if (writingActive == 1 || station.moveBusy == 1 || !layoutScaleMatches()) return;
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
  const bool fields = writesFields();
  if (!stopWasRequested() && fields) {
    writeLayoutFields();
    writingActive = 1;
  } else if (!stopWasRequested() && (maskImage.valid != 0 || alignmentMarkImage.valid != 0)) {
    StartRasterWriting();
    writingActive = 1;
  }
  // A stopped run ends as a finished one: the laser is already off, the stage goes back.
  SwitchLaser(laser, 0);

  MoveAxisAndWait(serialLink, kZAxis, station.stageZ);
  MoveXY(station.stageX, station.stageY, station.writingSpeed);
  saveExposurePicture(fields);

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
