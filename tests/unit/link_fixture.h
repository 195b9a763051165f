// A station with the virtual board behind the serial port, on the virtual clock, with the
// recorded operator: what the link tests start from.
#pragma once

#include <gmock/gmock.h>

#include <cstdio>
#include <sstream>

#include "link/controller_commands.h"
#include "station_fixture.h"

class LinkTest : public StationTest {
 protected:
  void SetUp() override {
    if (serialLink.failed == 0) CloseSerialLink(serialLink);
    StationTest::SetUp();
    testing::internal::CaptureStdout();
  }
  void TearDown() override {
    CloseSerialLink(serialLink);
    StationTest::TearDown();
    // The link's trace lines are kept out of the test log unless something failed.
    std::string trace = testing::internal::GetCapturedStdout();
    if (HasFailure()) std::fputs(trace.c_str(), stdout);
  }

  // Opens the link with the given stored speeds, then forgets the bytes of the open.
  void openWithSpeeds(int x, int y, int z) {
    serialLink.speedUmPerS[0] = x;
    serialLink.speedUmPerS[1] = y;
    serialLink.speedUmPerS[2] = z;
    ASSERT_EQ(OpenSerialLink(serialLink, true), 1);
    virtualSerialClearWritten();
  }

  // The commands written since the last clear, split at their NUL terminators.
  static std::vector<std::string> sentCommands() {
    std::vector<std::string> commands;
    std::istringstream written(virtualSerialWritten());
    for (std::string command; std::getline(written, command, '\0');) commands.push_back(command);
    return commands;
  }

  // The same without the position queries p, P and Q.
  static std::vector<std::string> sentWithoutQueries() {
    std::vector<std::string> commands = sentCommands();
    std::erase_if(commands, [](const std::string& c) { return c == "p" || c == "P" || c == "Q"; });
    return commands;
  }

  static std::string lastStatus() {
    const auto& calls = recordedCalls();
    for (auto it = calls.rbegin(); it != calls.rend(); ++it)
      if (it->rfind("status: ", 0) == 0) return it->substr(8);
    return {};
  }
};
