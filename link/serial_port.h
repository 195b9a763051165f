// The serial-port seam: exactly the port calls the link makes, one function per Win32
// call. Windows: serial_port_win32.cpp (CreateFileA on "\\.\COM%d", GetCommState/
// SetCommState on a DCB, COMMTIMEOUTS, ReadFile/WriteFile, CloseHandle). Tests and
// telvane-sim.exe: sim/virtual_serial_seam.cpp, the virtual controller board.
// serial_port_absent.cpp: a machine without any port. Results: true = the call succeeded.
#pragma once

#include <cstdint>

using SerialHandle = std::intptr_t;
constexpr SerialHandle kInvalidSerialHandle = -1;

// The four line settings the link changes; every other field of the driver's state stays
// as the last serialGetLineSettings read it.
struct SerialLineSettings {
  uint32_t baudRate = 0;
  int byteSize = 0;
  int parity = 0;    // 0 none
  int stopBits = 0;  // 0 one stop bit
};

// Milliseconds, as COMMTIMEOUTS.
struct SerialTimeouts {
  uint32_t readIntervalMs = 0;
  uint32_t readTotalMultiplierMs = 0;
  uint32_t readTotalConstantMs = 0;
  uint32_t writeTotalMultiplierMs = 0;
  uint32_t writeTotalConstantMs = 0;
};

// Synchronous, exclusive, existing port; kInvalidSerialHandle when it cannot be opened.
SerialHandle serialOpen(int comPort);
bool serialGetLineSettings(SerialHandle handle, SerialLineSettings& settings);
bool serialSetLineSettings(SerialHandle handle, const SerialLineSettings& settings);
bool serialGetTimeouts(SerialHandle handle, SerialTimeouts& timeouts);
bool serialSetTimeouts(SerialHandle handle, const SerialTimeouts& timeouts);
// Blocks at most as long as the time-outs allow; bytesRead may be 0 on success.
bool serialRead(SerialHandle handle, char* buffer, uint32_t maxBytes, uint32_t& bytesRead);
bool serialWrite(SerialHandle handle, const char* data, uint32_t count, uint32_t& bytesWritten);
void serialClose(SerialHandle handle);
// The error code of the last failed call (GetLastError).
uint32_t serialLastError();
