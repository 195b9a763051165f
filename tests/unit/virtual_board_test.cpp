// The board model alone. Its faults, limit switches and exposure log are met through the
// link in the stage motion, serial link and writing tests.
#include "sim/virtual_board.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

// A move ramps, cruises and reports its end; a move replacing a running one brakes before it
// turns; a stop halts it where it is and reports once; a zero moves the axis's origin, not
// the carriage the camera sees.
TEST(VirtualBoard, MovesRampAndReportTheirEndAStopHaltsOne) {
  VirtualBoard board;
  boardReset(board);
  auto send = [&](std::initializer_list<const char*> commands, uint64_t atMs) {
    for (const char* c : commands) boardReceive(board, c, std::strlen(c) + 1, atMs);
  };
  auto read = [&](uint64_t atMs) {
    boardAdvance(board, atMs);
    char buffer[64];
    return std::string(buffer, boardTakeOutput(board, buffer, sizeof buffer));
  };
  // b16 is 1600 steps/s²: 0.1 s ramps at 160 steps/s; 2.0 s at speed plus one ramp: 2.1 s.
  send({"T160", "b16", "L320"}, 0);
  EXPECT_EQ(board.axes[2].durationMs, 2100.0);
  EXPECT_EQ(boardAxisSteps(board, 2, 50), 2);      // 0.5 x 1600 x 0.05^2
  EXPECT_EQ(boardAxisSteps(board, 2, 1050), 160);  // half way
  EXPECT_EQ(read(2099), "");
  EXPECT_EQ(read(2100), "Z\r\n");
  send({"Q", "S160", "M1600"}, 2200);  // Y: 10 s
  EXPECT_EQ(read(2200), "q320\r\n");
  send({"N"}, 7200);
  const int64_t stoppedAt = boardAxisSteps(board, 1, 7200);
  EXPECT_NEAR(stoppedAt, 800, 100);
  EXPECT_EQ(read(20000), "Y\r\n");
  send({"Z", "P"}, 20000);
  EXPECT_EQ(read(20000), "P0\r\n");
  EXPECT_DOUBLE_EQ(boardAxisUm(board, 1, 20000), stoppedAt / 1.6);
  // Z from 320 down at 160 steps/s is at 248 after 0.5 s; sent up to 400 it brakes 0.1 s
  // on to 240, then climbs 160 steps in 1.1 s.
  send({"L0"}, 20000);
  send({"L400"}, 20500);
  EXPECT_EQ(boardAxisSteps(board, 2, 20600), 240);
  EXPECT_EQ(read(21699), "");
  EXPECT_EQ(read(21700), "Z\r\n");
}
