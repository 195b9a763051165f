// The controller board's command set: letters and numbers for moves, speeds, queries,
// the laser voltage, laser and lamp switches. Placeholder until the link lands.
#pragma once

#include "app/station.h"
#include "link/serial_link.h"

int SwitchLaser(LaserOutput& laser, int mode);  // 0 off, 1 on, 2 restore
int SwitchIllumination(int mode);               // 0 off, 1 on, 2 restore
int StopAxis(SerialLink& link, int axis);       // 0 X, 1 Y, 2 Z
