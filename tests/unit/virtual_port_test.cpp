// The virtual serial port as a Windows COM port: bytes take their time on the line, reads
// end as COMMTIMEOUTS say, and a board that hangs up takes its port with it.
#include "link/controller_commands.h"
#include "link_fixture.h"

class VirtualPort : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    openWithSpeeds(1000, 1000, 100);
    virtualClockAdvance(100);  // the open's bytes are off the line
  }
};

// At 9600 8N1 a byte is 10 bits, 1.04 ms: "p" and its NUL reach the board after 2.08 ms,
// where the query acts; "p0" CR LF comes back in 4.17 ms, and the read of at most 10 bytes
// ends 10 ms after the last. At 1200 baud 8N2 (11 bits) a six-byte command takes 55 ms,
// and the write returns only then.
TEST_F(VirtualPort, EveryByteTakesItsFrameAtTheLinesRate) {
  const VirtualBoard& board = virtualSerialBoard();
  const SerialTraffic before = virtualSerialTraffic();
  uint64_t t0 = virtualClockNow();
  QueryAxisPosition(serialLink, 0);
  EXPECT_EQ(board.commands.back().timeMs, t0 + 3);
  EXPECT_EQ(virtualClockNow(), t0 + 18);
  const SerialTraffic& after = virtualSerialTraffic();
  EXPECT_EQ(after.bytesWritten - before.bytesWritten, 2u);
  EXPECT_EQ(after.bytesRead - before.bytesRead, 4u);
  EXPECT_NEAR(after.writeMs - before.writeMs + after.readMs - before.readMs, 6.25, 1e-9);

  ASSERT_TRUE(serialSetLineSettings(serialLink.handle, {1200, 8, 0, 2}));
  t0 = virtualClockNow();
  SendCommand(serialLink, "s6400");
  EXPECT_EQ(virtualClockNow(), t0 + 55);
  EXPECT_EQ(board.commands.back().timeMs, t0 + 55);
  EXPECT_EQ(board.axes[0].speedStepsPerS, 6400);
}
