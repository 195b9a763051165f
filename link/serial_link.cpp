// Placeholder until the controller link lands: no port ever opens.
#include "link/serial_link.h"

int OpenSerialLink(SerialLink& link, bool) {
  link.failed = 1;
  return 0;
}

int CloseSerialLink(SerialLink& link) {
  link.failed = 1;
  return 0;
}
