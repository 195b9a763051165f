// The serial-port seam for a machine with no port at all: nothing ever opens.
#include "link/serial_port.h"

namespace {
constexpr uint32_t kFileNotFound = 2;  // ERROR_FILE_NOT_FOUND
}

SerialHandle serialOpen(int) { return kInvalidSerialHandle; }
bool serialGetLineSettings(SerialHandle, SerialLineSettings&) { return false; }
bool serialSetLineSettings(SerialHandle, const SerialLineSettings&) { return false; }
bool serialGetTimeouts(SerialHandle, SerialTimeouts&) { return false; }
bool serialSetTimeouts(SerialHandle, const SerialTimeouts&) { return false; }
bool serialRead(SerialHandle, char*, uint32_t, uint32_t& bytesRead) {
  bytesRead = 0;
  return false;
}
bool serialWrite(SerialHandle, const char*, uint32_t, uint32_t& bytesWritten) {
  bytesWritten = 0;
  return false;
}
void serialClose(SerialHandle) {}
uint32_t serialLastError() { return kFileNotFound; }
