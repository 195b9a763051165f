// What the responsive wait does to the hardware when the operator steps in: the laser
// held at 0 V while the stop question is open, and the motors stopped by a click on the
// display. The wait stands on the ground floor, below the controller link, so these are
// declared here and defined once by the link (link/stop_actions.cpp).
#pragma once

// Sets the laser voltage to 0 V and returns the voltage it had.
double darkenLaserForQuestion();
// Sets the voltage the laser had before the question again (the operator said "No").
void restoreLaserAfterQuestion(double volts);
// Sends the stop command of every axis.
void stopAllMotors();
