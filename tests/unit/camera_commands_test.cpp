// The camera's operator commands as the main window dispatches them.
#include <gtest/gtest.h>

#include <tuple>

#include "app/command_dispatch.h"
#include "camera_test_support.h"
#include "link/serial_link.h"
#include "resources/resource.h"
#include "sim/virtual_serial.h"

namespace {

using CameraCommands = CameraTest;

// The gain is held in 1..20, the exposure in 30..500000 us; text that does not parse
// keeps the value before it.
TEST_F(CameraCommands, GainAndExposureEntriesAreClampedWrittenBackAndApplied) {
  ASSERT_EQ(CameraConnect(camera), 1);
  const std::tuple<const char*, const char*, int> typed[] = {{"99", "12", 30},
                                                             {"abc", "700000", 500000}};
  for (const auto& [gain, exposure, exposureUs] : typed) {
    recordedSetBoxText(Box::Gain, gain);
    recordedSetBoxText(Box::Exposure, exposure);
    dispatchCommand(IDM_APPLY_GAIN_EXPOSURE);
    EXPECT_EQ(camera.gain, 20) << gain;
    EXPECT_EQ(recordedBoxText(Box::Exposure), std::to_string(exposureUs));
  }
  EXPECT_TRUE(hasLine("set ExposureTime 30.0", virtualCameraLog()));
}

TEST_F(CameraCommands, AutoSettingEndsBlueOnlyAndShowsTheManualValues) {
  ASSERT_EQ(CameraConnect(camera), 1);
  dispatchCommand(IDM_CAMERA_BLUE_ONLY);
  EXPECT_EQ(blueOnly, 1);
  testing::internal::CaptureStdout();
  dispatchCommand(IDM_CAMERA_AUTO_SETTING);
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(blueOnly, 0);
  EXPECT_TRUE(hasLine("set GainAuto Continuous", virtualCameraLog()));
  EXPECT_EQ(recordedBoxText(Box::Exposure), "30000");
}

double meanBrightness(const ImageBuffer& picture) {
  const size_t bytes = static_cast<size_t>(picture.width) * picture.height * 4;
  double sum = 0;
  for (size_t i = 0; i < bytes; i += 4) sum += picture.pixels[i] + picture.pixels[i + 1];
  return sum / (bytes / 4);
}

// "Camera Capture" stops the live view, switches the laser off and shows a frame grabbed
// while the lamp is lit; the lamp is dark afterwards.
TEST_F(CameraCommands, CaptureShowsAFrameTakenUnderTheLamp) {
  ASSERT_EQ(CameraConnect(camera), 1);
  ASSERT_EQ(OpenSerialLink(serialLink, true), 1);
  CameraSetup(camera, 4);  // the capture's own setting, with the lamp off
  CameraGrab(camera, 1);
  const double dark = meanBrightness(displayFrame);
  laser.laserOn = 1;
  dispatchCommand(IDC_CAMERA_CAPTURE);
  EXPECT_GT(meanBrightness(displayFrame), 2 * dark + 10) << dark;
  EXPECT_EQ(boardPin(virtualSerialBoard(), kBoardLampPin), 0);
  EXPECT_EQ(laser.laserOn, 0);
  EXPECT_TRUE(hasLine("timer 1: killed"));
  EXPECT_TRUE(hasLine("blit display 0,0", recordedDisplayCalls()));
  CloseSerialLink(serialLink);
}

}  // namespace
