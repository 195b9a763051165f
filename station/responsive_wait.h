// The responsive wait and the stop protocol shared by every long operation. A long
// operation sets writingActive to 1 and station.stopRequested to 0 when it starts, calls
// waitResponsive between its steps, tests stopRequested after each wait and sets
// writingActive back to 0 when it ends. The wait pumps the message queue in 10 ms
// slices, so the windows stay alive and a left click can stop the operation.
#pragma once

extern int writingActive;   // 1 while a writing run or another stoppable program runs
extern int completedWaits;  // waits that ended by time; counted only

// What ended a wait. Every result but kWaitTimeUp sets stopRequested to 1.
constexpr int kWaitStopConfirmed = 0;  // the operator answered "Yes" to the stop question
constexpr int kWaitTimeUp = 1;
constexpr int kWaitClosing = 2;        // the main window is gone: the program is ending
constexpr int kWaitMotorsStopped = 3;  // a click on the display stopped the motors

// Waits the given milliseconds while dispatching messages; returns what ended it.
int waitResponsive(int milliseconds);

// 1 while writing, focusing or a stage move of the writing run is under way, and for
// everything a wait dispatches: a command chosen during another command's wait runs inside
// it. Handlers that would move the stage, expose, or change the pattern, the zoom, the line
// list, the settings or the port do nothing then, so nothing of the kind starts inside
// another; the stop click (answered by the wait itself) and painting stay live.
int operationRunning();
