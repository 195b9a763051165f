// A station with the virtual board behind the serial port, on the virtual clock, with the
// recorded operator: what the link tests start from.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "app/station.h"
#include "link/serial_link.h"
#include "sim/recorded_feedback.h"
#include "sim/virtual_clock.h"
#include "sim/virtual_serial.h"

class LinkTest : public ::testing::Test {
 protected:
  void SetUp() override {
    virtualClockReset();
    recordedFeedbackReset();
    virtualSerialReset();
    if (serialLink.failed == 0) CloseSerialLink(serialLink);
    serialLink = SerialLink();
    laser = LaserOutput();
    testing::internal::CaptureStdout();
  }
  void TearDown() override {
    CloseSerialLink(serialLink);
    // The link's trace lines are kept out of the test log unless something failed.
    std::string trace = testing::internal::GetCapturedStdout();
    if (HasFailure()) std::fputs(trace.c_str(), stdout);
  }

  // Opens the link with the given stored speeds and forgets the bytes of the open.
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
    std::string current;
    for (char c : virtualSerialWritten()) {
      if (c == '\0') {
        commands.push_back(current);
        current.clear();
      } else {
        current.push_back(c);
      }
    }
    return commands;
  }

  static bool recorded(const std::string& prefix) {
    const auto& calls = recordedCalls();
    return std::any_of(calls.begin(), calls.end(),
                       [&](const std::string& c) { return c.rfind(prefix, 0) == 0; });
  }

  static std::string lastStatus() {
    const auto& calls = recordedCalls();
    for (auto it = calls.rbegin(); it != calls.rend(); ++it)
      if (it->rfind("status: ", 0) == 0) return it->substr(8);
    return {};
  }
};
