// The camera's operator commands as the main window dispatches them.
#include <gtest/gtest.h>

#include <tuple>

#include "app/command_dispatch.h"
#include "camera_test_support.h"
#include "link/controller_commands.h"
#include "sim/virtual_serial.h"

namespace {

class CameraCommands : public CameraTest {
 protected:
  void SetUp() override {
    CameraTest::SetUp();
    ASSERT_EQ(CameraConnect(camera), 1);
    virtualCameraUseFixedFrame(50);
  }
};

// The gain is held in 1..20, the exposure in 30..500000 us; text that does not parse
// keeps the value before it.
TEST_F(CameraCommands, GainAndExposureEntriesAreClampedWrittenBackAndApplied) {
  const std::tuple<const char*, const char*, int> typed[] = {{"99", "12", 30},
                                                             {"abc", "700000", 500000}};
  for (const auto& [gain, exposure, exposureUs] : typed) {
    recordedSetBoxText(Box::Gain, gain);
    recordedSetBoxText(Box::Exposure, exposure);
    dispatchCommand(32830);
    EXPECT_EQ(camera.gain, 20) << gain;
    EXPECT_EQ(camera.exposureTime, exposureUs) << exposure;
    EXPECT_EQ(recordedBoxText(Box::Gain), "20");
    EXPECT_EQ(recordedBoxText(Box::Exposure), std::to_string(exposureUs));
  }
  EXPECT_TRUE(hasLine("set ExposureTime 30.0", virtualCameraLog()));
}

TEST_F(CameraCommands, AutoSettingEndsBlueOnlyAndShowsTheManualValues) {
  dispatchCommand(32817);
  EXPECT_EQ(blueOnly, 1);
  testing::internal::CaptureStdout();
  dispatchCommand(32809);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(blueOnly, 0);
  EXPECT_TRUE(hasLine("set GainAuto Continuous", virtualCameraLog()));
  EXPECT_EQ(recordedBoxText(Box::Exposure), "30000");
}

TEST_F(CameraCommands, CaptureStopsTheLiveViewAndShowsAManualFrame) {
  laser.laserOn = 1;
  dispatchCommand(2102);
  EXPECT_TRUE(hasLine("timer 1: killed"));
  EXPECT_EQ(laser.laserOn, 0);
  EXPECT_EQ(displayFrame.pixels[4], 50);
  EXPECT_TRUE(hasLine("blit display 0,0", recordedDisplayCalls()));
}

}  // namespace

namespace {

double meanBrightness(const ImageBuffer& picture) {
  const size_t bytes = static_cast<size_t>(picture.width) * picture.height * 4;
  double sum = 0;
  for (size_t i = 0; i < bytes; i += 4) sum += picture.pixels[i] + picture.pixels[i + 1];
  return sum / (bytes / 4);
}

// The snapshot's frame is grabbed while the lamp is lit, and the lamp is dark afterwards.
TEST_F(CameraTest, TheSnapshotIsTakenUnderTheLamp) {
  ASSERT_EQ(CameraConnect(camera), 1);
  ASSERT_EQ(OpenSerialLink(serialLink, true), 1);
  CameraSetup(camera, 4);  // the snapshot's own camera setting, with the lamp off
  CameraGrab(camera, 1);
  const double dark = meanBrightness(displayFrame);
  dispatchCommand(2102);
  EXPECT_GT(meanBrightness(displayFrame), 2 * dark + 10) << dark;
  EXPECT_EQ(boardPin(virtualSerialBoard(), kBoardLampPin), 0);
  CloseSerialLink(serialLink);
}

}  // namespace
