// The serial-port seam on Windows: each function is one kernel32 call on the port handle.
// The DCB read last is kept so that a write of the line settings changes only the four
// fields the link sets and hands every other field back as the driver reported it.
#include <windows.h>

#include <cstdio>

#include "link/serial_port.h"

namespace {
DCB lastReadState;  // one port per program

HANDLE toHandle(SerialHandle handle) { return reinterpret_cast<HANDLE>(handle); }
}  // namespace

SerialHandle serialOpen(int comPort) {
  char name[32];
  std::snprintf(name, sizeof name, "\\\\.\\COM%d", comPort);
  HANDLE handle =
      CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return kInvalidSerialHandle;
  return reinterpret_cast<SerialHandle>(handle);
}

bool serialGetLineSettings(SerialHandle handle, SerialLineSettings& settings) {
  ZeroMemory(&lastReadState, sizeof lastReadState);
  lastReadState.DCBlength = sizeof lastReadState;
  if (!GetCommState(toHandle(handle), &lastReadState)) return false;
  settings.baudRate = lastReadState.BaudRate;
  settings.byteSize = lastReadState.ByteSize;
  settings.parity = lastReadState.Parity;
  settings.stopBits = lastReadState.StopBits;
  return true;
}

bool serialSetLineSettings(SerialHandle handle, const SerialLineSettings& settings) {
  DCB state = lastReadState;
  state.BaudRate = settings.baudRate;
  state.ByteSize = static_cast<BYTE>(settings.byteSize);
  state.Parity = static_cast<BYTE>(settings.parity);
  state.StopBits = static_cast<BYTE>(settings.stopBits);
  return SetCommState(toHandle(handle), &state) != 0;
}

bool serialGetTimeouts(SerialHandle handle, SerialTimeouts& timeouts) {
  COMMTIMEOUTS t = {};
  if (!GetCommTimeouts(toHandle(handle), &t)) return false;
  timeouts.readIntervalMs = t.ReadIntervalTimeout;
  timeouts.readTotalMultiplierMs = t.ReadTotalTimeoutMultiplier;
  timeouts.readTotalConstantMs = t.ReadTotalTimeoutConstant;
  timeouts.writeTotalMultiplierMs = t.WriteTotalTimeoutMultiplier;
  timeouts.writeTotalConstantMs = t.WriteTotalTimeoutConstant;
  return true;
}

bool serialSetTimeouts(SerialHandle handle, const SerialTimeouts& timeouts) {
  COMMTIMEOUTS t = {};
  t.ReadIntervalTimeout = timeouts.readIntervalMs;
  t.ReadTotalTimeoutMultiplier = timeouts.readTotalMultiplierMs;
  t.ReadTotalTimeoutConstant = timeouts.readTotalConstantMs;
  t.WriteTotalTimeoutMultiplier = timeouts.writeTotalMultiplierMs;
  t.WriteTotalTimeoutConstant = timeouts.writeTotalConstantMs;
  return SetCommTimeouts(toHandle(handle), &t) != 0;
}

bool serialRead(SerialHandle handle, char* buffer, uint32_t maxBytes, uint32_t& bytesRead) {
  DWORD count = 0;
  BOOL ok = ReadFile(toHandle(handle), buffer, maxBytes, &count, nullptr);
  bytesRead = count;
  return ok != 0;
}

bool serialWrite(SerialHandle handle, const char* data, uint32_t count, uint32_t& bytesWritten) {
  DWORD written = 0;
  BOOL ok = WriteFile(toHandle(handle), data, count, &written, nullptr);
  bytesWritten = written;
  return ok != 0;
}

void serialClose(SerialHandle handle) { CloseHandle(toHandle(handle)); }

uint32_t serialLastError() { return GetLastError(); }
