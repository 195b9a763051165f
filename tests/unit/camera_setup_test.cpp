// Exposure and gain set-up modes on the virtual camera: what is written, in which order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "camera_test_support.h"

namespace {

using Lines = std::vector<std::string>;

class Setup : public CameraTest {
 protected:
  void SetUp() override {
    CameraTest::SetUp();
    ASSERT_EQ(CameraConnect(camera), 1);
  }
};

TEST_F(Setup, ManualModeStopsGrabbingThenWritesGainAndExposure) {
  cameraSdkStartGrabbing(camera.camera, 5);
  CameraSetup(camera, 4);
  EXPECT_EQ(virtualCameraLog(),
            (Lines{"start grabbing 5", "open", "stop grabbing", "set GainAuto Off", "set Gain 20.0",
                   "set ExposureAuto Off", "set ExposureTime 30000.0", "set MaxNumBuffer 10"}));
  EXPECT_EQ(recordedBoxText(Box::CameraStatus), "Camera Manual Setting");
}

TEST_F(Setup, AutomaticModeSelectsBayerAndLetsTheCameraAdjust) {
  cameraSdkStartGrabbing(camera.camera, 1);
  testing::internal::CaptureStdout();
  CameraSetup(camera, 1);
  const std::string report = testing::internal::GetCapturedStdout();
  // The whole sensor becomes the auto region before each automatic function is switched on.
  Lines expected = {"start grabbing 1", "open", "stop grabbing", "set PixelFormat 32"};
  for (const char* automatic : {"set GainAuto Continuous", "set ExposureAuto Continuous"}) {
    expected.insert(expected.end(),
                    {"set OffsetX 0", "set OffsetY 0", "set Width 2464", "set Height 2056",
                     "auto region whole image", "set AutoTargetBrightness 0.3", automatic});
  }
  expected.push_back("set MaxNumBuffer 10");
  EXPECT_EQ(virtualCameraLog(), expected);
  EXPECT_EQ(recordedBoxText(Box::CameraStatus), "Camera Auto Gain Control");
  EXPECT_NE(report.find("Trying 'GainAuto = Continuous'.\nInitial Gain = 0\n"), std::string::npos);

  // A pixel format that is already Bayer is left alone.
  virtualCameraReset();
  ASSERT_EQ(CameraConnect(camera), 1);
  virtualCameraSetPixelFormatEntry(kPixelFormatBayerRG8Entry);
  testing::internal::CaptureStdout();
  CameraSetup(camera, 1);
  testing::internal::GetCapturedStdout();
  EXPECT_FALSE(hasLine("set PixelFormat", virtualCameraLog()));
}

TEST_F(Setup, UnknownWritesNothingOneShotWaitsForTheExposureLongExposureIsFixed) {
  CameraSetup(camera, 6);
  EXPECT_TRUE(recordedCalls().empty());
  camera.connected = 0;
  CameraSetup(camera, 4);
  EXPECT_TRUE(hasLine("status: No camera detected"));
  EXPECT_TRUE(virtualCameraLog().empty());

  ASSERT_EQ(CameraConnect(camera), 1);
  testing::internal::CaptureStdout();
  CameraSetup(camera, 2);
  const std::string report = testing::internal::GetCapturedStdout();
  EXPECT_NE(report.find("ExposureAuto went back to 'Off' after 0 frames.\n"), std::string::npos);
  virtualCameraReset();
  ASSERT_EQ(CameraConnect(camera), 1);
  CameraSetup(camera, 5);
  EXPECT_EQ(virtualCameraLog(), (Lines{"open", "set GainAuto Off", "set Gain 23.0",
                                       "set ExposureAuto Off", "set ExposureTime 500000.0"}));
}

}  // namespace
