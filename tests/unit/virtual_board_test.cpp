// The board model alone; its faults and limit switches are met through the link in the
// stage motion and serial link tests.
#include "sim/virtual_board.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

namespace {

struct Board {
  VirtualBoard b;
  Board() { boardReset(b); }
  void send(std::initializer_list<const char*> commands, uint64_t atMs) {
    for (const char* command : commands) boardReceive(b, command, std::strlen(command) + 1, atMs);
  }
  std::string read(uint64_t atMs) {
    boardAdvance(b, atMs);
    char buffer[64];
    return std::string(buffer, boardTakeOutput(b, buffer, sizeof buffer));
  }
};

}  // namespace

TEST(VirtualBoard, AMoveRampsCruisesAndReportsItsEnd) {
  Board board;
  // b16 is 1600 steps/s²: 0.1 s ramps at 160 steps/s; 2.0 s at speed plus one ramp: 2.1 s.
  board.send({"T160", "b16", "L320"}, 0);
  EXPECT_EQ(board.b.axes[2].durationMs, 2100.0);
  EXPECT_EQ(boardAxisSteps(board.b, 2, 50), 2);      // 0.5 x 1600 x 0.05^2
  EXPECT_EQ(boardAxisSteps(board.b, 2, 1050), 160);  // half way
  EXPECT_EQ(board.read(2099), "");
  EXPECT_EQ(board.read(2100), "Z\r\n");
  board.send({"Q"}, 2200);
  EXPECT_EQ(board.read(2200), "q320\r\n");
}

TEST(VirtualBoard, ZeroAndStopWorkOnTheRunningAxis) {
  Board board;
  board.send({"S160", "M1600"}, 0);  // 10 s
  board.send({"N"}, 5000);
  int64_t stoppedAt = boardAxisSteps(board.b, 1, 5000);
  EXPECT_GT(stoppedAt, 700);
  EXPECT_LT(stoppedAt, 900);
  EXPECT_EQ(board.read(20000), "Y\r\n");  // reported where it stopped, once
  board.send({"Z", "P"}, 20000);
  EXPECT_EQ(board.read(20000), "P0\r\n");
  EXPECT_DOUBLE_EQ(boardAxisUm(board.b, 1, 20000), stoppedAt / 1.6);
}

TEST(VirtualBoard, KeepsOutputsAndLogsTheExposedPath) {
  Board board;
  board.send({"G 5 127", "D 6 5", "s6400", "a1000000", "m6400"}, 0);  // 1000 um along X
  board.read(2000);
  board.send({"D 6 0", "G 5 0", "m0"}, 2000);
  board.read(4000);
  EXPECT_EQ(boardPwm(board.b, 5), 0);
  ASSERT_FALSE(board.b.exposure.empty());
  EXPECT_DOUBLE_EQ(board.b.exposure.back().x1Um, 1000.0);
  EXPECT_EQ(board.b.exposure.back().laserPwm, 127);
  for (const BoardExposure& e : board.b.exposure) EXPECT_LE(e.x1Um, 1000.0);
  // The writing programs set the voltage and leave the switch pin low: the laser writes.
  board.send({"G 5 117", "m640"}, 4000);  // back to 100 um
  board.read(6000);
  EXPECT_DOUBLE_EQ(board.b.exposure.back().x1Um, 100.0);
  EXPECT_EQ(board.b.exposure.back().laserPwm, 117);
}
