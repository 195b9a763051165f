// The serial-port seam on Windows. Placeholder until the link lands.
#include <windows.h>

#include "link/serial_port.h"

SerialHandle serialOpen(int) { return kInvalidSerialHandle; }
void serialClose(SerialHandle) {}
uint32_t serialLastError() { return GetLastError(); }
