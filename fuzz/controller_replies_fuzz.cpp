// The controller's replies as the program scans them. The input is one script (see
// replay_serial.h): the link is opened first (the greeting reads the X, Y and Z
// positions), then each step takes an operation byte and three parameter bytes from the
// script, and every port read the operation makes takes the next frame. Operations:
//   0 open the link again       1 query the position of axis p0
//   2 wait for axis p0 to reach int8(p1) um within p2 x 20 ms
//   3 read free reply text      4 move axis p0 by int8(p1) um and wait
//   5 straight XY move by (int8(p0), int8(p1)) um at p2 x 4 um/s
//   6 the next write fails (the link goes to its failed state)
// All on the virtual clock, so the waits cost nothing.
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_support.h"
#include "fuzz/replay_serial.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "link/stage_motion.h"

namespace {
constexpr int kMaxSteps = 64;
constexpr int kWaitMsPerUnit = 20;
constexpr int kSpeedPerUnit = 4;
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  freshStation();
  replaySerialStart(data, size);
  SerialLink& link = serialLink;
  OpenSerialLink(link, true);
  uint8_t operation = 0;
  for (int step = 0; step < kMaxSteps && replaySerialTake(operation); ++step) {
    uint8_t p[3] = {0, 0, 0};
    for (uint8_t& parameter : p) replaySerialTake(parameter);
    const int axis = p[0] % kAxisCount;
    switch (operation % 7) {
      case 0: OpenSerialLink(link, true); break;
      case 1: QueryAxisPosition(link, axis); break;
      case 2: WaitForAxis(link, axis, static_cast<int8_t>(p[1]), p[2] * kWaitMsPerUnit); break;
      case 3: ReadReplyText(link); break;
      case 4: MoveAxisBy(link, axis, static_cast<int8_t>(p[1])); break;
      case 5:
        MoveXY(link.positionUm[0] + static_cast<int8_t>(p[0]),
               link.positionUm[1] + static_cast<int8_t>(p[1]), p[2] * kSpeedPerUnit);
        break;
      case 6: replaySerialFailNextWrite(); break;
    }
  }
  CloseSerialLink(link);
  return 0;
}
