// The responsive wait and the stop protocol shared by every long operation. A long
// operation sets writingActive to 1 and station.stopRequested to 0 when it starts, calls
// waitResponsive between its steps, tests stopRequested after each wait and sets
// writingActive back to 0 when it ends. The wait pumps the message queue in 10 ms
// slices, so the windows stay alive and a left click can stop the operation.
#pragma once

extern int writingActive;   // 1 while a writing run or another stoppable program runs
extern int completedWaits;  // waits that ended by time; counted only

// Waits the given milliseconds while dispatching messages. Returns 1 when the time ran
// out, 0 when the operator confirmed the stop question (stopRequested is then 1), 3 when
// a click on the display stopped the motors while nothing was being written.
int waitResponsive(int milliseconds);

// 1 while writing, focusing or a stage move of the writing run is under way. Handlers that
// would start another operation or change the pattern, the zoom, the line list, the
// settings, the port or the stage do nothing then; the stop click and painting stay live.
int operationRunning();
