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

  // Buffered, as on the board's USB port: the write is back at once, the board takes the
  // command when it would have, and a query written behind it is answered after it.
  virtualSerialSetWritesBuffered(true);
  t0 = virtualClockNow();
  SendCommand(serialLink, "s3200");
  EXPECT_EQ(virtualClockNow(), t0);
  EXPECT_EQ(board.commands.back().timeMs, t0 + 55);
  QueryAxisPosition(serialLink, 0);
  EXPECT_EQ(board.commands.back().timeMs, t0 + 74);  // 55 + 18.3, in the millisecond it ends
  EXPECT_EQ(board.axes[0].speedStepsPerS, 3200);
  virtualSerialSetWritesBuffered(false);
}

// After "p" is written the reply "p0" CR LF arrives 1.04, 2.08, 3.13 and 4.17 ms after the
// board took the query (3 ms after the write began). Each read ends as COMMTIMEOUTS say.
TEST_F(VirtualPort, ReadsEndAsTheirTimeOutsSay) {
  constexpr uint32_t kMax = 0xFFFFFFFFu;
  struct Case {
    SerialTimeouts timeouts;
    uint32_t asked;
    uint32_t got;
    uint64_t endsAfterMs;  // from the start of the write
    uint64_t readAfterMs = 0;
  };
  const Case cases[] = {
      {{kMax, 0, 0, 0, 0}, 10, 0, 2},       // returns at once with what is there
      {{kMax, kMax, 100, 0, 0}, 10, 1, 5},  // waits for the first byte only
      {{0, 0, 0, 0, 0}, 4, 4, 8},           // blocks until every byte asked for came
      {{10, 0, 0, 0, 0}, 10, 4, 18},        // 10 ms after the last byte
      {{0, 10, 50, 0, 0}, 10, 4, 152},      // the total: 10 x 10 + 50 after the write
      {{10, 10, 50, 0, 0}, 2, 2, 6},        // enough bytes end it before either
      {{10, 10, 50, 0, 0}, 10, 4, 32, 20},  // bytes already there: 10 ms after the read began
  };
  for (const Case& c : cases) {
    virtualClockAdvance(100);
    ASSERT_TRUE(serialSetTimeouts(serialLink.handle, c.timeouts));
    const uint64_t t0 = virtualClockNow();
    uint32_t written = 0, got = 0;
    char buffer[64];
    serialWrite(serialLink.handle, "p", 2, written);
    virtualClockAdvance(c.readAfterMs);
    EXPECT_TRUE(serialRead(serialLink.handle, buffer, c.asked, got));
    EXPECT_EQ(got, c.got) << c.timeouts.readIntervalMs << "/" << c.asked;
    EXPECT_EQ(virtualClockNow() - t0, c.endsAfterMs) << c.timeouts.readIntervalMs << "/" << c.asked;
    uint32_t rest = 0;  // what this read left behind
    virtualClockAdvance(20);
    serialSetTimeouts(serialLink.handle, {kMax, 0, 0, 0, 0});
    serialRead(serialLink.handle, buffer, sizeof buffer, rest);
    EXPECT_EQ(got + rest, 4u);
  }
  // Without time-outs a read for bytes the board will never send fails the test at once.
  serialSetTimeouts(serialLink.handle, {});
  uint32_t got = 0;
  char buffer[4];
  EXPECT_DEATH(serialRead(serialLink.handle, buffer, 4, got), "never send");
}

// The line settings stay as set, a frame the driver cannot make is refused (87) and changes
// nothing. A board that hangs up takes its port with it: reads and writes fail with
// ERROR_ACCESS_DENIED, the comm-state calls with ERROR_BAD_COMMAND, an open finds no port.
TEST_F(VirtualPort, TheLineSettingsStayAndAVanishedPortFailsEveryCall) {
  const SerialHandle port = serialLink.handle;
  SerialLineSettings settings;
  ASSERT_TRUE(serialSetLineSettings(port, {19200, 7, 2, 2}));
  EXPECT_FALSE(serialSetLineSettings(port, {9600, 9, 0, 0}));
  EXPECT_EQ(serialLastError(), 87u);
  ASSERT_TRUE(serialGetLineSettings(port, settings));
  EXPECT_EQ(std::tuple(settings.baudRate, settings.byteSize, settings.parity, settings.stopBits),
            std::tuple(19200u, 7, 2, 2));

  virtualSerialBoard().hungUp = true;
  char buffer[8];
  uint32_t count = 0;
  SerialTimeouts timeouts;
  EXPECT_FALSE(serialRead(port, buffer, 8, count));
  EXPECT_EQ(serialLastError(), 5u);
  EXPECT_FALSE(serialWrite(port, "p", 2, count));
  EXPECT_EQ(serialLastError(), 5u);
  EXPECT_FALSE(serialGetLineSettings(port, settings) || serialGetTimeouts(port, timeouts));
  EXPECT_EQ(serialLastError(), 22u);
  EXPECT_EQ(OpenSerialLink(serialLink, true), 0);
  EXPECT_EQ(serialLastError(), 2u);
  EXPECT_TRUE(hasLine("message Warning: Error in  opening serial port"));
}
