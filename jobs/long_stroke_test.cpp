// "Long stroke test": five rows 800 um apart, each of twenty 200 um strokes at one laser
// voltage (4.1 V rising by 0.1 V a row), with a 1 um step on X after every stroke, and
// its conditions written to "long stroke writing condition(N).txt" in the run folder.
#include <cstdio>
#include <fstream>

#include "jobs/test_writing.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "station/data_paths.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/text_format.h"

int longStrokeRecordNumber = 0;

namespace {

constexpr int kStrokeUm = 200;      // X_stroke
constexpr int kRowPitchUm = 800;    // Y_stroke
constexpr int kStrokesPerRow = 20;  // N
constexpr int kRows = 5;            // lines
constexpr double kStartVolts = 4.1;
constexpr double kVoltsPerRow = 0.1;
constexpr int kStartDzUm = -10;  // DZ start
constexpr int kDzStepUm = 1;     // z_step
constexpr int kStrokeSpeedUmPerS = 200;
constexpr int kRowMoveSpeedUmPerS = 800;
constexpr int kStepWaitMs = 10;

void writeRecord() {
  ensureRunFolder(dataPaths, 0);
  char name[80];
  std::snprintf(name, sizeof name, "long stroke writing condition(%d).txt",
                longStrokeRecordNumber++);
  std::ofstream file(dataPaths.runFolder / name);
  if (!file) return;
  file << formatText("laser shift:(%d,%d,%d)\n", laser.laserShiftX, laser.laserShiftY,
                     laser.laserShiftZ)
       << formatText("laser voltage start: %.2f V, step: %.2f V, lines=%d\n", kStartVolts,
                     kVoltsPerRow, kRows)
       << formatText("DZ start: %d (um), z_step=%d (um), N=%d\n", kStartDzUm, kDzStepUm,
                     kStrokesPerRow)
       << formatText("X_stroke= %d (um), Y_stroke= %d (um)\n", kStrokeUm, kRowPitchUm)
       << formatText("speed= %d (um/s)\n", kStrokeSpeedUmPerS);
}

bool stopped() { return station.stopRequested == 1; }

// The rows; returns early on a stop.
void writeRows(double xs, double ys, double rs) {
  for (int row = 0; row < kRows; ++row) {
    const double y = ys + kRowPitchUm * row;
    SwitchLaser(laser, 0);
    MoveAxisAndWait(serialLink, 2, rs);
    MoveXY(xs, y, kRowMoveSpeedUmPerS);
    SetLaserVoltage(laser, kStartVolts + kVoltsPerRow * row);
    for (int stroke = 0; stroke < kStrokesPerRow; ++stroke) {
      MoveXY(xs + kStrokeUm * stroke, y, kStrokeSpeedUmPerS);
      MoveAxisBy(serialLink, 0, 1.0);
      if (waitResponsive(kStepWaitMs) == 0 || stopped()) return;
    }
  }
}

}  // namespace

void LongStrokeTest() {
  TestPlaces places = startTestProgram();
  approachTestPlace(places, kStartDzUm);
  writeRecord();
  if (!stopped()) writeRows(places.xs, places.ys, places.startReference);
  endTestProgram(places);
}

void onLongStrokeTestCommand() {
  if (operationRunning()) return;
  LongStrokeTest();
}
