// The serial-port seam for a machine with no port at all.
#include "link/serial_port.h"

SerialHandle serialOpen(int) { return kInvalidSerialHandle; }
void serialClose(SerialHandle) {}
uint32_t serialLastError() { return 2; }  // ERROR_FILE_NOT_FOUND
