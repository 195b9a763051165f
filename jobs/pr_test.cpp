// "Start PR test": five rows 800 um apart on photoresist, each at one laser voltage (3.8 V
// rising by 0.1 V a row), written as 100 steps of 40 um and 1 um along X at an eighth of
// the skip speed, so each row runs 4100 um with the voltage up.
#include "camera/live_view_control.h"
#include "jobs/test_writing.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "station/responsive_wait.h"
#include "station/station.h"

namespace {

constexpr int kRows = 5;
constexpr int kStepsPerRow = 100;
constexpr double kStepUm = 40.0;
constexpr double kFineStepUm = 1.0;
constexpr int kRowPitchUm = 800;
constexpr double kStartVolts = 3.8;
constexpr double kVoltsPerRow = 0.1;
constexpr int kStartDzUm = -50;
constexpr int kSpeedDivisor = 8;  // of the skip speed, while writing
constexpr int kRowMoveSpeedUmPerS = 800;
constexpr int kStepWaitMs = 10;

bool stopped() { return station.stopRequested == 1; }

// The rows; returns early on a stop, with the voltage still up.
void writeRows(double xs, double ys, double rs) {
  for (int row = 0; row < kRows; ++row) {
    SetLaserVoltage(laser, kStartVolts + kVoltsPerRow * row);
    int speed = station.writingSpeed / kSpeedDivisor;
    SetAxisSpeed(serialLink, 0, speed);
    for (int step = 0; step < kStepsPerRow; ++step) {
      MoveAxisBy(serialLink, 0, kStepUm);
      MoveAxisBy(serialLink, 0, kFineStepUm);
      if (waitResponsive(kStepWaitMs) == 0 || stopped()) return;
    }
    SwitchLaser(laser, 0);
    MoveAxisAndWait(serialLink, 2, rs);
    MoveXY(xs, ys + kRowPitchUm * (row + 1), kRowMoveSpeedUmPerS);
  }
}

}  // namespace

void PRTest() {
  TestPlaces places = startTestProgram();
  approachTestPlace(places, kStartDzUm);
  if (!stopped()) writeRows(places.xs, places.ys, places.startReference);
  endTestProgram(places);
}

void onPRTestCommand() {
  if (operationRunning()) return;
  setLiveView(kLiveViewOff);
  PRTest();
}
