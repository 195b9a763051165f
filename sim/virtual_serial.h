// Test control of the virtual serial port (sim/virtual_serial_seam.cpp): the station's
// board sits behind every COM port number that is present. Tests reset it, read what the
// program wrote, and switch the port's and the board's faults.
#pragma once

#include <cstdint>
#include <string>

#include "link/serial_port.h"
#include "sim/virtual_board.h"

// A fresh board at rest, the port present and closed, the byte record empty.
void virtualSerialReset();
VirtualBoard& virtualSerialBoard();
// Every byte the program wrote since the last reset, NUL terminators included.
const std::string& virtualSerialWritten();
void virtualSerialClearWritten();
// Whether serialOpen finds the port.
void virtualSerialSetPresent(bool present);
// The line settings the program last handed to the port (a fresh driver reports 1200 7E1).
const SerialLineSettings& virtualSerialLineSettings();
// Makes the driver's line-settings read fail (the first read of an open).
void virtualSerialFailLineSettings(bool fail);
// Whether a write returns at once, its bytes going out at the line's pace while the
// program goes on (the board's USB serial port, or a terminal under Wine), instead of when
// its last byte has left the UART. Off after a reset.
void virtualSerialSetWritesBuffered(bool buffered);

// The bytes that crossed the line since the reset and the time they took on it at the line
// settings in force (writeMs + readMs is the line time of the whole exchange).
struct SerialTraffic {
  uint64_t bytesWritten = 0;
  uint64_t bytesRead = 0;
  double writeMs = 0;
  double readMs = 0;
};
const SerialTraffic& virtualSerialTraffic();
// Until when either direction of the line carries bytes already written or sent back, ms
// on the station's time line (sim/station_clock.h).
double virtualSerialLineBusyUntilMs();
