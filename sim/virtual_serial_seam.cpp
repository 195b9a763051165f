// The serial-port seam in front of the virtual board, on the station's time line (the virtual
// clock in tests, real time in telvane-sim.exe). It behaves as a Windows COM port does:
//
// - Every byte takes its frame (start bit, data bits, parity, stop bits) at the baud rate
//   the program set: about 1.04 ms at 9600 8N1. A write returns once its last byte has left
//   the UART (in the millisecond it leaves; the line stays busy to the microsecond, so
//   back-to-back writes lose no time), or at once when writes are buffered, as a USB serial
//   port or a terminal under Wine has them; the board acts on a command when its NUL has
//   arrived. The board's replies come back byte by byte at the same rate.
// - A read honours COMMTIMEOUTS: the total time-out (multiplier x bytes asked + constant),
//   the interval between two bytes (counted from the read's start for bytes already
//   waiting), MAXDWORD/0/0 returning at once with what is there, MAXDWORD/MAXDWORD/c waiting
//   for the first byte, and all zero blocking until every byte asked for has come.
// - A board that hangs up takes its port with it, as the board's own USB serial port
//   vanishes: ReadFile and WriteFile fail with ERROR_ACCESS_DENIED, the comm-state calls
//   with ERROR_BAD_COMMAND (what Windows' USB CDC driver reports for a handle whose device
//   was removed; other adapters' drivers give ERROR_DEVICE_NOT_CONNECTED, which the program
//   treats alike), and opening it again fails with ERROR_FILE_NOT_FOUND.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <limits>

#include "link/serial_port.h"
#include "sim/station_clock.h"
#include "sim/virtual_serial.h"
#include "sim/virtual_station.h"

namespace {

constexpr SerialHandle kPortHandle = 7;
constexpr uint32_t kFileNotFound = 2;       // ERROR_FILE_NOT_FOUND
constexpr uint32_t kAccessDenied = 5;       // ERROR_ACCESS_DENIED: opened twice, or vanished
constexpr uint32_t kInvalidHandle = 6;      // ERROR_INVALID_HANDLE
constexpr uint32_t kBadCommand = 22;        // ERROR_BAD_COMMAND
constexpr uint32_t kGenFailure = 31;        // ERROR_GEN_FAILURE: the driver's state unreadable
constexpr uint32_t kInvalidParameter = 87;  // ERROR_INVALID_PARAMETER
constexpr uint32_t kMaxDword = 0xFFFFFFFFu;
constexpr uint64_t kNever = std::numeric_limits<uint64_t>::max();
constexpr SerialLineSettings kFreshDriver = {1200, 7, 2, 0};  // 1200 7E1

struct InboundByte {
  char byte;
  double arrivesUs;  // on the stationClockNowMs() time line, in microseconds
};

struct Port {
  bool present = true;
  bool open = false;
  bool failLineSettings = false;
  uint32_t lastError = 0;
  SerialLineSettings lineSettings = kFreshDriver;
  SerialTimeouts timeouts;
  std::string written;
  SerialTraffic traffic;
  bool writesBuffered = false;
  double txFreeUs = 0;  // when the line to the board is free again
  double rxFreeUs = 0;  // when the line back from the board is free again
  std::deque<InboundByte> inbound;
};

Port port;

bool usable(SerialHandle handle) {
  if (handle == kPortHandle && port.open) return true;
  port.lastError = kInvalidHandle;
  return false;
}

// One byte's frame on the line at the settings in force, microseconds.
double byteUs() {
  const SerialLineSettings& s = port.lineSettings;
  if (s.baudRate == 0) return 0;
  double stopBits = s.stopBits == 0 ? 1.0 : s.stopBits == 1 ? 1.5 : 2.0;
  double bits = 1.0 + s.byteSize + (s.parity != 0 ? 1.0 : 0.0) + stopBits;
  return bits * 1e6 / s.baudRate;
}

uint64_t ceilMs(double us) { return static_cast<uint64_t>(std::ceil(us / 1000.0 - 1e-9)); }

// What the board has sent by atMs goes onto the line back, one frame after another.
void collectOutput(uint64_t atMs) {
  VirtualBoard& board = stationBoard();
  char byte;
  while (boardTakeOutput(board, &byte, 1) == 1) {
    port.rxFreeUs = std::max(port.rxFreeUs, double(atMs) * 1000.0) + byteUs();
    port.inbound.push_back({byte, port.rxFreeUs});
  }
}

// Brings the board to atMs event by event, so each report leaves when its move ended.
void advanceBoard(uint64_t atMs) {
  VirtualBoard& board = stationBoard();
  collectOutput(board.nowMs);  // what a test put in front of the program
  for (uint64_t next; (next = boardNextEventMs(board)) <= atMs;) {
    boardAdvance(board, next);
    collectOutput(next);
  }
  boardAdvance(board, atMs);
  collectOutput(atMs);
}

bool vanished(uint32_t error) {
  if (!stationBoard().hungUp) return false;
  port.lastError = error;
  return true;
}

[[noreturn]] void endlessRead() {
  std::fprintf(stderr,
               "virtual serial port: a read without time-outs waits for bytes the board will "
               "never send\n");
  std::abort();
}

}  // namespace

void virtualSerialReset() {
  boardReset(stationBoard());
  port = Port();
}

VirtualBoard& virtualSerialBoard() { return stationBoard(); }
const std::string& virtualSerialWritten() { return port.written; }
void virtualSerialClearWritten() { port.written.clear(); }
void virtualSerialSetPresent(bool isPresent) { port.present = isPresent; }
void virtualSerialFailLineSettings(bool fail) { port.failLineSettings = fail; }
void virtualSerialSetWritesBuffered(bool buffered) { port.writesBuffered = buffered; }
const SerialLineSettings& virtualSerialLineSettings() { return port.lineSettings; }
const SerialTraffic& virtualSerialTraffic() { return port.traffic; }
double virtualSerialLineBusyUntilMs() { return std::max(port.txFreeUs, port.rxFreeUs) / 1000.0; }

SerialHandle serialOpen(int comPort) {
  if (!port.present || comPort < 1 || stationBoard().hungUp) {
    port.lastError = kFileNotFound;
    return kInvalidSerialHandle;
  }
  if (port.open) {
    port.lastError = kAccessDenied;
    return kInvalidSerialHandle;
  }
  port.open = true;
  return kPortHandle;
}

bool serialGetLineSettings(SerialHandle handle, SerialLineSettings& settings) {
  if (!usable(handle) || vanished(kBadCommand)) return false;
  if (port.failLineSettings) {
    port.lastError = kGenFailure;
    return false;
  }
  settings = port.lineSettings;
  return true;
}

bool serialSetLineSettings(SerialHandle handle, const SerialLineSettings& settings) {
  if (!usable(handle) || vanished(kBadCommand)) return false;
  // A driver refuses a frame it cannot make and keeps the settings it had.
  if (settings.baudRate == 0 || settings.byteSize < 5 || settings.byteSize > 8 ||
      settings.parity < 0 || settings.parity > 4 || settings.stopBits < 0 ||
      settings.stopBits > 2) {
    port.lastError = kInvalidParameter;
    return false;
  }
  port.lineSettings = settings;
  return true;
}

bool serialGetTimeouts(SerialHandle handle, SerialTimeouts& t) {
  if (!usable(handle) || vanished(kBadCommand)) return false;
  t = port.timeouts;
  return true;
}

bool serialSetTimeouts(SerialHandle handle, const SerialTimeouts& t) {
  if (!usable(handle) || vanished(kBadCommand)) return false;
  port.timeouts = t;
  return true;
}

bool serialRead(SerialHandle handle, char* buffer, uint32_t maxBytes, uint32_t& bytesRead) {
  bytesRead = 0;
  if (!usable(handle) || vanished(kAccessDenied)) return false;
  const SerialTimeouts& t = port.timeouts;
  const bool returnAtOnce =
      t.readIntervalMs == kMaxDword && t.readTotalMultiplierMs == 0 && t.readTotalConstantMs == 0;
  const bool firstByteEnds = t.readIntervalMs == kMaxDword &&
                             t.readTotalMultiplierMs == kMaxDword && t.readTotalConstantMs > 0 &&
                             t.readTotalConstantMs < kMaxDword;
  const uint64_t startMs = stationClockNowMs();
  uint64_t deadline = kNever;
  if (firstByteEnds)
    deadline = startMs + t.readTotalConstantMs;
  else if (t.readTotalMultiplierMs != 0 || t.readTotalConstantMs != 0)
    deadline = startMs + uint64_t(t.readTotalMultiplierMs) * maxBytes + t.readTotalConstantMs;
  const bool intervalUsed = t.readIntervalMs != 0 && t.readIntervalMs != kMaxDword;
  double lastByteUs = double(startMs) * 1000.0;  // the interval counts from here

  for (;;) {
    const uint64_t now = stationClockNowMs();
    advanceBoard(now);
    while (bytesRead < maxBytes && !port.inbound.empty() &&
           port.inbound.front().arrivesUs <= double(now) * 1000.0) {
      buffer[bytesRead++] = port.inbound.front().byte;
      lastByteUs = std::max(lastByteUs, port.inbound.front().arrivesUs);
      port.inbound.pop_front();
    }
    if (bytesRead == maxBytes || returnAtOnce || (firstByteEnds && bytesRead > 0)) break;
    if (now >= deadline) break;
    uint64_t intervalEnds = kNever;
    if (intervalUsed && bytesRead > 0) {
      intervalEnds = ceilMs(lastByteUs + t.readIntervalMs * 1000.0);
      if (now >= intervalEnds) break;
    }
    uint64_t wake = std::min({deadline, intervalEnds, boardNextEventMs(stationBoard())});
    if (!port.inbound.empty()) wake = std::min(wake, ceilMs(port.inbound.front().arrivesUs));
    if (wake == kNever) endlessRead();
    stationClockSleepMs(static_cast<uint32_t>(std::max<uint64_t>(wake, now + 1) - now));
  }
  port.traffic.bytesRead += bytesRead;
  port.traffic.readMs += bytesRead * byteUs() / 1000.0;
  return true;
}

bool serialWrite(SerialHandle handle, const char* data, uint32_t count, uint32_t& bytesWritten) {
  bytesWritten = 0;
  if (!usable(handle) || vanished(kAccessDenied)) return false;
  VirtualBoard& board = stationBoard();
  const double frameUs = byteUs();
  const uint64_t now = stationClockNowMs();
  const double startUs = std::max(double(now) * 1000.0, port.txFreeUs);
  // The board takes each command when its NUL has arrived, and the tail of the write with it.
  uint32_t from = 0;
  for (uint32_t i = 0; i < count; ++i) {
    if (data[i] != '\0' && i + 1 < count) continue;
    const uint64_t arrivedMs = ceilMs(startUs + (i + 1) * frameUs);
    advanceBoard(arrivedMs);
    boardReceive(board, data + from, i + 1 - from, arrivedMs);
    collectOutput(arrivedMs);
    from = i + 1;
  }
  port.txFreeUs = startUs + count * frameUs;
  port.written.append(data, count);
  port.traffic.bytesWritten += count;
  port.traffic.writeMs += count * frameUs / 1000.0;
  bytesWritten = count;
  // Synchronous: back when the last byte is out of the UART. Buffered: back at once; the
  // board has already been brought to the bytes' arrival, and what it sends back arrives
  // no earlier than it would.
  const uint64_t doneMs = static_cast<uint64_t>(port.txFreeUs / 1000.0);
  if (!port.writesBuffered && doneMs > now)
    stationClockSleepMs(static_cast<uint32_t>(doneMs - now));
  return true;
}

void serialClose(SerialHandle handle) {
  if (handle == kPortHandle) port.open = false;
}

uint32_t serialLastError() { return port.lastError; }
