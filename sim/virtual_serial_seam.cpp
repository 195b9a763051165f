// The serial-port seam in front of the virtual board, on systemTickMs() time (the virtual
// clock in tests, real time in telvane-sim.exe). A read behaves like a real port with the
// link's time-outs: it returns at once with what is pending, or waits for the board's
// next report, but never longer than the total read time-out.
#include <algorithm>

#include "link/serial_port.h"
#include "sim/virtual_serial.h"
#include "sim/virtual_station.h"
#include "station/system_services.h"

namespace {

constexpr SerialHandle kPortHandle = 7;
constexpr uint32_t kFileNotFound = 2;           // ERROR_FILE_NOT_FOUND
constexpr uint32_t kAccessDenied = 5;           // ERROR_ACCESS_DENIED: opened twice
constexpr uint32_t kInvalidHandle = 6;          // ERROR_INVALID_HANDLE
constexpr uint32_t kDeviceNotConnected = 1167;  // ERROR_DEVICE_NOT_CONNECTED

bool present = true;
bool open = false;
bool failLineSettings = false;
uint32_t lastError = 0;
SerialLineSettings lineSettings = {1200, 7, 2, 0};  // what a fresh driver reports
SerialTimeouts timeouts;
std::string written;

bool usable(SerialHandle handle) {
  if (handle == kPortHandle && open) return true;
  lastError = kInvalidHandle;
  return false;
}

}  // namespace

void virtualSerialReset() {
  boardReset(stationBoard());
  present = true;
  open = false;
  failLineSettings = false;
  lineSettings = {1200, 7, 2, 0};
  timeouts = {};
  written.clear();
}

VirtualBoard& virtualSerialBoard() { return stationBoard(); }
const std::string& virtualSerialWritten() { return written; }
void virtualSerialClearWritten() { written.clear(); }
void virtualSerialSetPresent(bool isPresent) { present = isPresent; }
void virtualSerialFailLineSettings(bool fail) { failLineSettings = fail; }
const SerialLineSettings& virtualSerialLineSettings() { return lineSettings; }

SerialHandle serialOpen(int comPort) {
  if (!present || comPort < 1) {
    lastError = kFileNotFound;
    return kInvalidSerialHandle;
  }
  if (open) {
    lastError = kAccessDenied;
    return kInvalidSerialHandle;
  }
  open = true;
  return kPortHandle;
}

bool serialGetLineSettings(SerialHandle handle, SerialLineSettings& settings) {
  if (!usable(handle)) return false;
  if (failLineSettings) {
    lastError = kDeviceNotConnected;
    return false;
  }
  settings = lineSettings;
  return true;
}

bool serialSetLineSettings(SerialHandle handle, const SerialLineSettings& settings) {
  if (!usable(handle)) return false;
  lineSettings = settings;
  return true;
}

bool serialGetTimeouts(SerialHandle handle, SerialTimeouts& t) {
  if (!usable(handle)) return false;
  t = timeouts;
  return true;
}

bool serialSetTimeouts(SerialHandle handle, const SerialTimeouts& t) {
  if (!usable(handle)) return false;
  timeouts = t;
  return true;
}

bool serialRead(SerialHandle handle, char* buffer, uint32_t maxBytes, uint32_t& bytesRead) {
  bytesRead = 0;
  if (!usable(handle)) return false;
  VirtualBoard& board = stationBoard();
  if (board.hungUp) {
    lastError = kDeviceNotConnected;
    return false;
  }
  uint64_t now = systemTickMs();
  boardAdvance(board, now);
  if (board.output.empty()) {
    uint64_t deadline =
        now + timeouts.readTotalConstantMs + uint64_t(timeouts.readTotalMultiplierMs) * maxBytes;
    uint64_t until = std::min(deadline, boardNextEventMs(board));
    if (until > now) systemSleepMs(static_cast<uint32_t>(until - now));
    boardAdvance(board, systemTickMs());
  }
  bytesRead = static_cast<uint32_t>(boardTakeOutput(board, buffer, maxBytes));
  return true;
}

bool serialWrite(SerialHandle handle, const char* data, uint32_t count, uint32_t& bytesWritten) {
  bytesWritten = 0;
  if (!usable(handle)) return false;
  if (!boardReceive(stationBoard(), data, count, systemTickMs())) {
    lastError = kDeviceNotConnected;
    return false;
  }
  written.append(data, count);
  bytesWritten = count;
  return true;
}

void serialClose(SerialHandle handle) {
  if (handle == kPortHandle) open = false;
}

uint32_t serialLastError() { return lastError; }
