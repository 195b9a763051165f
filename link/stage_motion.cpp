// Placeholder until the link lands: moves only update the position model.
#include "link/stage_motion.h"

#include "link/serial_link.h"

int MoveXY(double xUm, double yUm, double) {
  serialLink.positionUm[0] = xUm;
  serialLink.positionUm[1] = yUm;
  return 1;
}
