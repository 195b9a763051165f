// The camera's operator commands as the main window dispatches them.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/command_dispatch.h"
#include "camera_test_support.h"

namespace {

using Lines = std::vector<std::string>;

class CameraCommands : public ::testing::Test {
 protected:
  void SetUp() override {
    resetCameraWorld();
    ASSERT_EQ(CameraConnect(camera), 1);
    virtualCameraUseFixedFrame(50);
  }
  static bool cameraDid(const std::string& line) {
    const Lines& log = virtualCameraLog();
    return std::find(log.begin(), log.end(), line) != log.end();
  }
};

TEST_F(CameraCommands, GainAndExposureEntriesAreClampedWrittenBackAndApplied) {
  recordedSetBoxText(Box::Gain, "99");
  recordedSetBoxText(Box::Exposure, "12");
  dispatchCommand(32830);
  EXPECT_EQ(camera.gain, 20);
  EXPECT_EQ(camera.exposureTime, 30.0);
  EXPECT_EQ(recordedBoxText(Box::Gain), "20");
  EXPECT_EQ(recordedBoxText(Box::Exposure), "30");
  EXPECT_TRUE(cameraDid("set Gain 20.0"));
  EXPECT_TRUE(cameraDid("set ExposureTime 30.0"));
  EXPECT_TRUE(cameraDid("start grabbing 1"));
}

TEST_F(CameraCommands, TextThatDoesNotParseKeepsTheOldValues) {
  recordedSetBoxText(Box::Gain, "abc");
  recordedSetBoxText(Box::Exposure, "700000");
  dispatchCommand(32830);
  EXPECT_EQ(camera.gain, 20);
  EXPECT_EQ(camera.exposureTime, 500000.0);
  EXPECT_EQ(recordedBoxText(Box::Exposure), "500000");
}

TEST_F(CameraCommands, AutoSettingEndsBlueOnlyAndShowsTheManualValues) {
  dispatchCommand(32817);
  EXPECT_EQ(blueOnly, 1);
  testing::internal::CaptureStdout();
  dispatchCommand(32809);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(blueOnly, 0);
  EXPECT_TRUE(cameraDid("set GainAuto Continuous"));
  EXPECT_EQ(recordedBoxText(Box::Gain), "20");
  EXPECT_EQ(recordedBoxText(Box::Exposure), "30000");
}

TEST_F(CameraCommands, CaptureStopsTheLiveViewAndShowsAManualFrame) {
  laser.laserOn = 1;
  dispatchCommand(2102);
  EXPECT_TRUE(recordedCall("timer 1: killed"));
  EXPECT_EQ(laser.laserOn, 0);
  EXPECT_TRUE(cameraDid("set ExposureAuto Off"));
  EXPECT_EQ(displayFrame.pixels[4], 50);
  const Lines& calls = recordedDisplayCalls();
  EXPECT_NE(std::find(calls.begin(), calls.end(), "blit display 0,0"), calls.end());
  EXPECT_EQ(recordedCalls().back(), "focus main");
}

}  // namespace
