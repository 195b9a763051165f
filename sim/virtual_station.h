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
  // Where the laser falls in the picture, in display pixels from the left and up from the
  // bottom (the display shows the camera's picture at half its size): the program's laser
  // shift, which the display marks with its red spot.
  int spotDisplayX = 616;
  int spotDisplayYUp = 514;
};

// One straight piece of the stage path while the laser was on, crossed from t0Ms to t1Ms
// (ends equal: the stage stood still), at height zUm.
struct ExposureSegment {
  double x0Um, y0Um, x1Um, y1Um;
  int laserPwm;
  double t0Ms = 0, t1Ms = 0, zUm = 0;
};

StationView virtualStationView(uint64_t nowMs);
// Everything the laser has written so far, oldest first.
std::vector<ExposureSegment> virtualStationExposure(uint64_t nowMs);

// The station's one board, behind the virtual serial port (sim/virtual_serial.h reaches it
// with its port state and faults).
VirtualBoard& stationBoard();
