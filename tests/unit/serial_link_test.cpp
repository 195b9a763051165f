
#include "link/controller_commands.h"
#include "link_fixture.h"

using SerialLinkTest = LinkTest;

TEST_F(SerialLinkTest, OpeningSetsTheLineSendsTheOriginQueriesAndSpeeds) {
  virtualSerialBoard().axes[1].machineSteps = 1600;  // 1000 um
  virtualSerialBoard().axes[2].machineSteps = -160;  // -100 um
  std::copy_n(std::begin({1000, 1000, 100}), 3, serialLink.speedUmPerS);
  ASSERT_EQ(OpenSerialLink(serialLink, true), 1);
  const SerialLineSettings& line = virtualSerialLineSettings();  // 9600 baud, 8N1
  EXPECT_EQ(std::tuple(line.baudRate, line.byteSize, line.parity, line.stopBits),
            std::tuple(9600u, 8, 0, 0));
  const char expected[] = "z\0p\0P\0Q\0s6400\0a32000\0S1600\0T160";  // and its own NUL
  EXPECT_EQ(virtualSerialWritten(), std::string(expected, sizeof expected));
  EXPECT_DOUBLE_EQ(serialLink.positionUm[1], 1000.0);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], -100.0);
  // Opening again closes the open port first (a second handle would be refused); a failed
  // read of the line settings gives 2 and leaves the port open, unconfigured.
  EXPECT_EQ(OpenSerialLink(serialLink, true), 1);
  virtualSerialFailLineSettings(true);
  virtualSerialClearWritten();
  EXPECT_EQ(OpenSerialLink(serialLink, true), 2);
  EXPECT_EQ(serialLink.failed, 0);
  EXPECT_TRUE(virtualSerialWritten().empty());
}

// The last complete marker wins (p10p20 is 20 steps); a Z reply needs lower-case q. Free
// reply text is one attempt: a 50-byte read and a 10 ms wait.
TEST_F(SerialLinkTest, RepliesAreReadFromTheirLastMarkerOrAsFreeText) {
  openWithSpeeds(1000, 1000, 100);
  serialLink.positionUm[2] = 40.0;
  virtualSerialBoard().faults.silent = true;  // the test puts the replies in itself
  const std::tuple<int, std::string, double> replies[] = {
      {0, "p10p20", StepsToMicrometres(0, 20)}, {2, "Q160\r\n", 40.0}, {2, "q160\r\n", 100.0}};
  for (const auto& [axis, text, um] : replies) {
    virtualSerialBoard().output.assign(text.begin(), text.end());
    EXPECT_DOUBLE_EQ(QueryAxisPosition(serialLink, axis), um) << text;
  }
  virtualSerialBoard().faults = {};
  const uint64_t before = virtualClockNow();
  EXPECT_EQ(ReadReplyText(serialLink), std::optional<std::string>(""));
  EXPECT_EQ(virtualClockNow() - before, 550u + 10u);
  SendCommand(serialLink, "P");
  EXPECT_EQ(ReadReplyText(serialLink), std::optional<std::string>("P0\r\n"));
  virtualSerialBoard().faults = {.garbage = true};
  virtualSerialBoard().axes[0].machineSteps = -1280;
  EXPECT_DOUBLE_EQ(QueryAxisPosition(serialLink, 0), -200.0) << "read through garbage bytes";
  CloseSerialLink(serialLink);
  EXPECT_EQ(ReadReplyText(serialLink), std::nullopt);
}
