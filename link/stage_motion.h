// Stage motion: single-axis moves with the wait for their end, relative moves and the
// straight XY move with matched axis speeds. The waits read the board's replies, keep the
// position model in the SerialLink record up to date, set the limit flags on a limit
// arrival, and pump the message queue in 10 ms slices so the operator can stop them.
// Jogging is in jog_pad.h; the command texts in controller_commands.h.
#pragma once

#include <cstdint>

#include "link/serial_link.h"

// What ended a WaitForAxis.
enum AxisWaitStatus {
  kWaitTimedOut = 0,         // or stopped: a confirmed stop, a click on the display, a close
  kWaitArrivalLetter = 1,    // the board reported the end of the move
  kWaitPositionReply = 2,    // a position reply within 1 um of the target
  kWaitQueriedPosition = 5,  // a queried position within 1 um of the target
  kWaitLimitReached = 10,    // the board reported a limit switch
};

// Writes the link's cached stage position to the position boxes.
void showStagePosition();

// 1000 ms plus twice the nominal travel time at the axis's stored speed.
int MoveTimeoutMs(const SerialLink& link, int axis, double targetUm);
// Reads replies until the move ends or timeoutMs pass; shows the outcome on the status
// line and returns the status.
int WaitForAxis(SerialLink& link, int axis, double targetUm, int timeoutMs);
// Absolute move and its wait; a target equal to the present position does nothing.
void MoveAxisAndWait(SerialLink& link, int axis, double targetUm);
void MoveAxisBy(SerialLink& link, int axis, double deltaUm);

// The travel time and axis speeds of a straight XY move.
struct XYMovePlan {
  uint64_t travelMs;
  int xSpeedUmPerS;
  int ySpeedUmPerS;
};
XYMovePlan PlanXYMove(double dxUm, double dyUm, int speedUmPerS);
// Straight move to (x, y) at speed along the longer axis, both axes arriving together;
// afterwards the X and Y positions are the target whatever the board reported. A confirmed
// stop of writing lets it run to its end; stopped motors or the window closing end it.
void MoveXY(double xUm, double yUm, int speedUmPerS);
