// The camera's operator commands as the main window dispatches them.
#include <gtest/gtest.h>

#include "app/command_dispatch.h"
#include "camera_test_support.h"

namespace {

class CameraCommands : public CameraTest {
 protected:
  void SetUp() override {
    CameraTest::SetUp();
    ASSERT_EQ(CameraConnect(camera), 1);
    virtualCameraUseFixedFrame(50);
  }
};

TEST_F(CameraCommands, GainAndExposureEntriesAreClampedWrittenBackAndApplied) {
  struct Entry {
    const char *gain, *exposure;
    int gainApplied;
    double exposureApplied;
    const char *gainShown, *exposureShown;
  };
  for (const Entry &e : {Entry{"99", "12", 20, 30.0, "20", "30"},
                         Entry{"abc", "700000", 20, 500000.0, "20", "500000"}}) {
    recordedSetBoxText(Box::Gain, e.gain);
    recordedSetBoxText(Box::Exposure, e.exposure);
    dispatchCommand(32830);
    EXPECT_EQ(camera.gain, e.gainApplied) << e.gain;
    EXPECT_EQ(camera.exposureTime, e.exposureApplied) << e.exposure;
    EXPECT_EQ(recordedBoxText(Box::Gain), e.gainShown);
    EXPECT_EQ(recordedBoxText(Box::Exposure), e.exposureShown);
  }
  EXPECT_TRUE(hasLine("set Gain 20.0", virtualCameraLog()));
  EXPECT_TRUE(hasLine("set ExposureTime 30.0", virtualCameraLog()));
  EXPECT_TRUE(hasLine("start grabbing 1", virtualCameraLog()));
}

TEST_F(CameraCommands, AutoSettingEndsBlueOnlyAndShowsTheManualValues) {
  dispatchCommand(32817);
  EXPECT_EQ(blueOnly, 1);
  testing::internal::CaptureStdout();
  dispatchCommand(32809);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(blueOnly, 0);
  EXPECT_TRUE(hasLine("set GainAuto Continuous", virtualCameraLog()));
  EXPECT_EQ(recordedBoxText(Box::Gain), "20");
  EXPECT_EQ(recordedBoxText(Box::Exposure), "30000");
}

TEST_F(CameraCommands, CaptureStopsTheLiveViewAndShowsAManualFrame) {
  laser.laserOn = 1;
  dispatchCommand(2102);
  EXPECT_TRUE(hasLine("timer 1: killed"));
  EXPECT_EQ(laser.laserOn, 0);
  EXPECT_TRUE(hasLine("set ExposureAuto Off", virtualCameraLog()));
  EXPECT_EQ(displayFrame.pixels[4], 50);
  EXPECT_TRUE(hasLine("blit display 0,0", recordedDisplayCalls()));
  EXPECT_EQ(recordedCalls().back(), "focus main");
}

}  // namespace
