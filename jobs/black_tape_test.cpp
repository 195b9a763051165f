// "Start black tape test": one short exposure on black tape at 4.7 V, 20 um along Y at a
// quarter of the outside filling speed between two one-second waits, then back to the
// start. At its normal end the voltage stays at 4.7 V, as the station has always left it;
// a stop switches the laser off.
#include "camera/live_view_control.h"
#include "jobs/test_writing.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "station/responsive_wait.h"
#include "station/station.h"

namespace {

constexpr double kExposureVolts = 4.7;
constexpr double kExposureMoveUm = 20.0;
constexpr double kNextPlaceUm = 100.0;    // along X, after the cycle
constexpr int kExposureSpeedDivisor = 4;  // of the outside filling speed
constexpr int kDwellMs = 1000;

// The one cycle; false when the operator stopped it.
bool exposeOnce(double y0, double reference) {
  SerialLink& link = serialLink;
  int slowSpeed = station.outsideSpeed / kExposureSpeedDivisor;
  SetAxisSpeed(link, 1, slowSpeed);
  SetLaserVoltage(laser, kExposureVolts);
  if (waitResponsive(kDwellMs) == 0) return false;
  MoveAxisBy(link, 1, kExposureMoveUm);
  if (waitResponsive(kDwellMs) == 0 || station.stopRequested == 1) return false;
  int fastSpeed = 2 * station.outsideSpeed;
  SetAxisSpeed(link, 1, fastSpeed);
  MoveAxisAndWait(link, 2, reference);
  MoveAxisAndWait(link, 1, y0);
  MoveAxisBy(link, 0, kNextPlaceUm);
  return true;
}

}  // namespace

void BlackTapeTest() {
  SerialLink& link = serialLink;
  const TestPlaces places = startTestProgram();
  const double x0 = places.x0, y0 = places.y0, reference = places.reference;

  // The laser never dwells on a stop.
  if (!exposeOnce(y0, reference)) SwitchLaser(laser, 0);

  int skipSpeed = station.writingSpeed;
  SetAxisSpeed(link, 0, skipSpeed);
  MoveAxisAndWait(link, 2, reference);
  MoveAxisAndWait(link, 0, x0);
  MoveAxisAndWait(link, 1, y0);
  station.stopRequested = 0;
  writingActive = 0;
}

void onBlackTapeTestCommand() {
  if (operationRunning()) return;
  setLiveView(kLiveViewOff);
  BlackTapeTest();
}
