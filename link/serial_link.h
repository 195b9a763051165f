// The serial link to the controller board: the one SerialLink record (open port,
// cached axis positions, limit flags and speeds) and the open/close/write/read
// operations on the serial-port seam. The command texts are in controller_commands.h,
// the moves and waits in stage_motion.h.
#pragma once

#include <cstdint>

#include "link/serial_port.h"

struct SerialLink {
  SerialHandle handle = kInvalidSerialHandle;
  uint32_t bytesTransferred = 0;
  int32_t lastCallResult = 0;
  char commandText[200] = {};
  unsigned char failed = 1;      // 1: closed, or a write failed
  double positionUm[3] = {};     // X, Y, Z
  double upperLimit[3] = {};     // non-zero: no further move in +
  double lowerLimit[3] = {};     // non-zero: no further move in -
  int32_t speedUmPerS[3] = {};   // as last commanded
  int32_t comPort = 3;           // 1..30
  int32_t lastMoveSteps = 0;
  char ioBuffer[256] = {};
};

extern SerialLink serialLink;

// 1 open and configured, 0 failed, 2 the first line-settings read failed.
int OpenSerialLink(SerialLink& link, bool ownedByMainWindow);
int CloseSerialLink(SerialLink& link);
