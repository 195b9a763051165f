// The serial-port seam replaying a script of the board's bytes: see replay_serial.h.
#include <algorithm>
#include <cstring>
#include <string>

#include "fuzz/replay_serial.h"
#include "link/serial_port.h"
#include "station/system_services.h"

namespace {

constexpr SerialHandle kPortHandle = 9;
constexpr uint8_t kFailedRead = 0xFF;
constexpr uint32_t kInvalidHandle = 6;          // ERROR_INVALID_HANDLE
constexpr uint32_t kDeviceNotConnected = 1167;  // ERROR_DEVICE_NOT_CONNECTED

const uint8_t* script = nullptr;
size_t remaining = 0;
std::string pending;  // bytes of frames taken but not yet read, as in the port's buffer
bool open = false;
bool failWrite = false;
uint32_t lastError = 0;
SerialLineSettings lineSettings = {1200, 7, 2, 0};
SerialTimeouts timeouts;

bool usable(SerialHandle handle) {
  if (handle == kPortHandle && open) return true;
  lastError = kInvalidHandle;
  return false;
}

}  // namespace

void replaySerialStart(const uint8_t* bytes, size_t size) {
  script = bytes;
  remaining = size;
  pending.clear();
  open = false;
  failWrite = false;
  lineSettings = {1200, 7, 2, 0};
  timeouts = {};
}

void replaySerialFailNextWrite() { failWrite = true; }

bool replaySerialTake(uint8_t& byte) {
  if (remaining == 0) return false;
  byte = *script++;
  --remaining;
  return true;
}

SerialHandle serialOpen(int comPort) {
  if (open || comPort < 1) return kInvalidSerialHandle;
  open = true;
  return kPortHandle;
}

bool serialGetLineSettings(SerialHandle handle, SerialLineSettings& settings) {
  if (!usable(handle)) return false;
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
  if (pending.empty()) {
    uint8_t length = 0;
    if (replaySerialTake(length)) {
      if (length == kFailedRead) {
        lastError = kDeviceNotConnected;
        return false;
      }
      const size_t taken = std::min<size_t>(length, remaining);
      pending.assign(reinterpret_cast<const char*>(script), taken);
      script += taken;
      remaining -= taken;
    }
  }
  const size_t count = std::min<size_t>(pending.size(), maxBytes);
  std::memcpy(buffer, pending.data(), count);
  pending.erase(0, count);
  bytesRead = static_cast<uint32_t>(count);
  if (count == 0)
    systemSleepMs(timeouts.readTotalConstantMs + timeouts.readTotalMultiplierMs * maxBytes);
  else
    systemSleepMs(static_cast<uint32_t>(count));
  return true;
}

bool serialWrite(SerialHandle handle, const char*, uint32_t count, uint32_t& bytesWritten) {
  bytesWritten = 0;
  if (!usable(handle)) return false;
  if (failWrite) {
    failWrite = false;
    lastError = kDeviceNotConnected;
    return false;
  }
  bytesWritten = count;
  return true;
}

void serialClose(SerialHandle handle) {
  if (handle == kPortHandle) open = false;
}

uint32_t serialLastError() { return lastError; }
