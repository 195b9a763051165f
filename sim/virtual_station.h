// The virtual station as its camera sees it: where the stage is and what the laser and
// lamp do, read from the virtual board that sits behind the virtual serial port.
// The board model owns this state; the virtual camera only reads it.
#pragma once

#include <cstdint>
#include <vector>

struct VirtualBoard;

struct StationView {
  double xUm = 0;  // stage position, micrometres
  double yUm = 0;
  double zUm = 0;
  bool lampOn = false;   // illumination pin
  bool laserOn = false;  // laser pin
  int laserPwm = 0;      // laser intensity channel, 0..255
};

// One straight piece of the stage path while the laser was on.
struct ExposureSegment {
  double x0Um, y0Um, x1Um, y1Um;
  int laserPwm;
};

StationView virtualStationView(uint64_t nowMs);
// Everything the laser has written so far, oldest first.
std::vector<ExposureSegment> virtualStationExposure(uint64_t nowMs);

// The station's one board, behind the virtual serial port (sim/virtual_serial.h reaches it
// with its port state and faults).
VirtualBoard& stationBoard();
