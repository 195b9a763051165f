// The serial link to the controller board: the one SerialLink record (open port, cached
// axis positions, limit flags and speeds) and opening, closing, writing one command and
// reading replies on the serial-port seam. It does not know the command letters nor the
// board's greeting after an open (controller_commands.h), nor how moves are waited
// (stage_motion.h).
// Used from the user-interface thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "link/serial_port.h"

constexpr int kAxisCount = 3;  // 0 X, 1 Y, 2 Z

struct SerialLink {
  SerialHandle handle = kInvalidSerialHandle;
  uint32_t bytesTransferred = 0;  // by the last read or write
  int32_t lastCallResult = 0;     // of the last port call, non-zero = success
  char commandText[200] = {};     // each command is formatted here; a write error's text too
  unsigned char failed = 1;       // 1: closed, or a write failed; every command is dropped
  double positionUm[kAxisCount] = {};
  double upperLimit[kAxisCount] = {};    // non-zero: no further move in the + direction
  double lowerLimit[kAxisCount] = {};    // non-zero: no further move in the - direction
  int32_t speedUmPerS[kAxisCount] = {};  // as last commanded
  int32_t comPort = 3;                   // 1..30
  int32_t lastMoveSteps = 0;
  char ioBuffer[256] = {};  // each command as sent, each reply as read (50 bytes + NUL)
};

extern SerialLink serialLink;

// Opens the port with its line settings and time-outs and gives the board the time its
// reset takes. 1 open and configured, 0 failed ("Error in  opening serial port" when the
// port does not open), 2 the first read of the line settings failed (the port stays
// open). OpenSerialLink (controller_commands.h) adds the board's greeting.
int OpenSerialPort(SerialLink& link, bool ownedByMainWindow);
// Closes the port once; always 0.
int CloseSerialLink(SerialLink& link);
// Writes text and its NUL terminator; 1 sent, 0 not (a failed write fails the link).
int WriteCommandText(SerialLink& link, const char* text);
// Copies text into the link's input/output buffer and writes it from there.
int SendCommand(SerialLink& link, const char* text);
// One read of a position reply (at most 10 bytes, bounded at 50 + 10 x 10 ms) into the
// link's buffer, NUL-terminated; the bytes read, 0 when nothing could be read.
uint32_t ReadPositionReply(SerialLink& link);
// One read attempt of free reply text (at most 50 bytes); nothing when it cannot be read.
std::optional<std::string> ReadReplyText(SerialLink& link);
