// The frame the calibration programs share: the start of a long operation, the approach
// to the laser's place and the way back. See test_writing.h.
#include "jobs/test_writing.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "station/responsive_wait.h"
#include "station/station.h"

TestPlaces startTestProgram() {
  writingActive = 1;
  station.stopRequested = 0;
  const SerialLink& link = serialLink;
  TestPlaces places = {};
  places.x0 = link.positionUm[0];
  places.y0 = link.positionUm[1];
  places.reference = link.positionUm[0];
  return places;
}

void approachTestPlace(TestPlaces& places, int startDzUm) {
  SerialLink& link = serialLink;
  MoveXY(places.x0 + laser.laserShiftX, places.y0 + laser.laserShiftY, station.writingSpeed);
  MoveAxisBy(link, 2, laser.laserShiftZ + startDzUm);
  places.xs = link.positionUm[0];
  places.ys = link.positionUm[1];
  places.startReference = link.positionUm[0];
}

void endTestProgram(const TestPlaces& places) {
  SwitchLaser(laser, 0);
  MoveAxisAndWait(serialLink, 2, places.reference);
  MoveXY(places.x0, places.y0, station.writingSpeed);
  station.stopRequested = 0;
  writingActive = 0;
}
