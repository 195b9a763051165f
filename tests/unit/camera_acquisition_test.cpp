// Attaching the camera and grabbing frames, raw BayerRG8 frames to the bottom-up display
// picture, the test pattern, and the exposure and gain set-up modes (what is written to
// the camera, in which order), on the virtual camera.
#include <gtest/gtest.h>

#include <tuple>

#include "camera_test_support.h"

namespace {

using Grab = CameraTest;

TEST_F(Grab, WithoutACameraEveryGrabShowsTheMovingTestPattern) {
  virtualCameraSetPresent(false);
  EXPECT_EQ(CameraConnect(camera), 0);
  EXPECT_TRUE(hasLine("status: No camera detected"));
  EXPECT_EQ(CameraGrab(camera, 1), 0);
  EXPECT_EQ(CameraGrab(camera, 1), 0);
  EXPECT_EQ(grabFailureCount, 2);
  EXPECT_EQ(displayFrame.pixels[8], (8 + 2) / 10);
  // A failed reconnection keeps the camera attached before.
  virtualCameraSetPresent(true);
  ASSERT_EQ(CameraConnect(camera), 1);
  SdkCamera* attached = camera.camera;
  virtualCameraSetPresent(false);
  EXPECT_EQ(CameraReconnect(camera), 0);
  EXPECT_EQ(camera.camera, attached);
}

TEST_F(Grab, OneFrameLeavesTheAveragingBuffersAloneAndResetsTheZoom) {
  ASSERT_EQ(CameraConnect(camera), 1);
  virtualCameraUseFixedFrame(60);
  camera.sumFrame[0] = 1234;
  camera.averageFrame[0] = 77;
  camera.convertedFrame[0] = 88;
  station.zoom = 1.0;
  CameraGrab(camera, 1);
  EXPECT_EQ((std::tuple<int, int, int>(camera.sumFrame[0], camera.averageFrame[0],
                                       camera.convertedFrame[0])),
            (std::tuple<int, int, int>(1234, 77, 88)));
  EXPECT_EQ(displayFrame.pixels[0], 60);
  EXPECT_EQ(station.zoom, station.zoomReset) << "a shown frame is seen in the camera view";
}

// Frame 1 fails all its 100 attempts: after frame 0 three results remain, then each
// restart gives four, so 3 + 19 x 4 + 1 = 80 failed results fill exactly 100 attempts.
TEST_F(Grab, AGivenUpFrameDarkensTheAverageOfFour) {
  ASSERT_EQ(CameraConnect(camera), 1);
  virtualCameraUseFixedFrame(40);
  virtualCameraFailResults(1, 80);
  CameraGrab(camera, 4);
  EXPECT_EQ(camera.sumFrame[12345], 120);
  EXPECT_EQ(displayFrame.pixels[2], 30);
  EXPECT_EQ(grabFailureCount, 0);
}

constexpr int kWidth = 2464;
constexpr int kRowBytes = 4928;  // one display row
using Bgr = std::vector<int>;

class Conversion : public CameraTest {
 protected:
  void SetUp() override {
    CameraTest::SetUp();
    raw.assign(camera.frameBytes, 0);
    target.assign(camera.frameBytes, 0xAB);
  }
  // A display pixel's blue, green and red bytes; memory row 0 is the bottom of the picture.
  Bgr bgr(int memoryRow, int column) const {
    const uint8_t* p = &target[memoryRow * kRowBytes + column * 4];
    return {p[0], p[1], p[2]};
  }
  // The rule for the 2 x 2 cell whose top-left sample is raw[i]: blue the bottom-right
  // sample, green the mean of the two others, red the top-left.
  Bgr cellRule(int i) const {
    return {raw[i + kWidth + 1], (raw[i + kWidth] + raw[i + 1]) >> 1, raw[i]};
  }
  std::vector<uint8_t> raw;
  std::vector<uint8_t> target;
};

// Every cell of a noisy frame against the rule, raw row pair 0 in the last display row,
// so that no lane of the wide loop can mix up its samples; the reserved byte stays. The
// source clamp stops one row pair short, so the lowest display row repeats the cell at the
// clamp (row 2053, column 2463). "Blue only" keeps the bottom-right sample alone.
TEST_F(Conversion, EveryCellOfANoisyFrameFollowsTheCellRule) {
  for (size_t i = 0; i < raw.size(); ++i) raw[i] = static_cast<uint8_t>((i * 2654435761u) >> 13);
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  for (int y = 0; y < 2054; y += 2) {
    for (int x = 0; x < kWidth; x += 2) {
      ASSERT_EQ(bgr(1027 - y / 2, x / 2), cellRule(y * kWidth + x)) << "raw " << x << "," << y;
      ASSERT_EQ(target[(1027 - y / 2) * kRowBytes + 2 * x + 3], 0xAB);
    }
  }
  const int clamp = static_cast<int>(camera.frameBytes) - 2 * kWidth - 1;
  for (int column : {0, 600, 1231}) EXPECT_EQ(bgr(0, column), cellRule(clamp)) << column;
  EXPECT_EQ(camera.sourceIndex, clamp);
  blueOnly = 1;
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  EXPECT_EQ(bgr(1027, 0), (Bgr{raw[kWidth + 1], 0, 0}));
  EXPECT_EQ(camera.red, 0);
}

using TestPattern = CameraTest;

TEST_F(TestPattern, ShiftsByOneBytePerFailedGrabAndWrapsAt100WithTheLaserOn) {
  std::vector<uint8_t> first(camera.frameBytes), second(camera.frameBytes);
  grabFailureCount = 7;
  FillTestPattern(camera, first.data());
  grabFailureCount = 8;
  FillTestPattern(camera, second.data());
  for (int x : {0, 9, 500, 2000}) EXPECT_EQ(second[x], first[x + 1]) << x;
  // Row 201 (y div 2 = 100) at column 1: 100 + 0 with the laser off.
  EXPECT_EQ(second[201 * kWidth + 1], 100);

  laser.laserOn = 1;
  FillTestPattern(camera, second.data());
  EXPECT_EQ(second[201 * kWidth + 1], 0);
  EXPECT_EQ(second[1000 - 8], 0) << "(x + count) div 10 = 100 wraps to 0";
  laser.laserOn = 0;
  FillTestPattern(camera, second.data());
  EXPECT_EQ(second[1000 - 8], 100);
}

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
