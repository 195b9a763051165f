// Placeholder until the virtual board lands: the port is absent.
#include "link/serial_port.h"

SerialHandle serialOpen(int) { return kInvalidSerialHandle; }
void serialClose(SerialHandle) {}
uint32_t serialLastError() { return 2; }  // ERROR_FILE_NOT_FOUND
