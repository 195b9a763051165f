// The controller's side of the responsive wait's interventions (station/stop_actions.h).
#include "station/stop_actions.h"

#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "station/station.h"

double darkenLaserForQuestion() {
  const double volts = laser.laserVoltage;
  SetLaserVoltage(laser, 0.0);
  return volts;
}

void restoreLaserAfterQuestion(double volts) { SetLaserVoltage(laser, volts); }

void stopAllMotors() {
  for (int axis = 0; axis < kAxisCount; ++axis) StopAxis(serialLink, axis);
}
