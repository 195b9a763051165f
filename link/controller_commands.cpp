// Placeholder until the link lands.
#include "link/controller_commands.h"

int SwitchLaser(LaserOutput& laser, int mode) {
  int previous = laser.laserOn;
  if (mode == 0 || mode == 1) laser.laserOn = mode;
  return previous;
}

int SwitchIllumination(int) { return 0; }

int StopAxis(SerialLink&, int) { return 1; }
