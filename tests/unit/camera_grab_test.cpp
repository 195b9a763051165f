// Attaching the camera and grabbing frames on the virtual camera.
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

}  // namespace
