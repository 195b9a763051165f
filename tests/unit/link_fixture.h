// A station with the virtual board behind the serial port, on the virtual clock, with the
// recorded operator: what the link tests start from.
#pragma once

#include <gmock/gmock.h>

#include <cstdio>
#include <map>
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
    if (std::string trace = testing::internal::GetCapturedStdout(); HasFailure())
      std::fputs(trace.c_str(), stdout);
  }

  // Opens the link with the given stored speeds, then forgets the bytes of the open.
  void openWithSpeeds(int x, int y, int z) {
    std::copy_n(std::begin({x, y, z}), 3, serialLink.speedUmPerS);
    ASSERT_EQ(OpenSerialLink(serialLink, true), 1);
    virtualSerialClearWritten();
  }

  // The commands written since the last clear (those starting with one of `letters`, if given).
  static std::vector<std::string> sentCommands(const std::string& letters = "") {
    std::vector<std::string> commands;
    std::istringstream written(virtualSerialWritten());
    for (std::string command; std::getline(written, command, '\0');)
      if (letters.empty() || letters.find(command[0]) != std::string::npos)
        commands.push_back(command);
    return commands;
  }

  // The same without the position queries p, P and Q.
  static std::vector<std::string> sentWithoutQueries() {
    std::vector<std::string> commands = sentCommands();
    std::erase_if(commands, [](const std::string& c) { return c == "p" || c == "P" || c == "Q"; });
    return commands;
  }

  // Commands as one text with commas between: at most count of them from first.
  static std::string joined(const std::vector<std::string>& commands, size_t first = 0,
                            size_t count = SIZE_MAX) {
    std::string text;
    for (size_t i = first; i < commands.size() && i - first < count; ++i)
      text += (text.empty() ? "" : ",") + commands[i];
    return text;
  }

  // The box the board's laser exposed at each laser channel value, um.
  struct Extent {
    double left = 1e9, right = -1e9, low = 1e9, high = -1e9;
  };
  static std::map<int, Extent> exposedByPwm() {
    std::map<int, Extent> extent;
    for (const BoardExposure& e : virtualSerialBoard().exposure) {
      Extent& x = extent[e.laserPwm];
      x.left = std::min({x.left, e.x0Um, e.x1Um});
      x.right = std::max({x.right, e.x0Um, e.x1Um});
      x.low = std::min({x.low, e.y0Um, e.y1Um});
      x.high = std::max({x.high, e.y0Um, e.y1Um});
    }
    return extent;
  }

  static std::string lastStatus() {
    const std::vector<std::string> statuses = linesAfter("status: ", recordedCalls());
    return statuses.empty() ? "" : statuses.back();
  }
};
