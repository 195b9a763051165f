// The camera's operator commands as the main window dispatches them, and the live
// picture's overlays, the scale bar and the snapshot.
#include "camera/live_render.h"

#include <gtest/gtest.h>

#include <tuple>

#include "app/command_dispatch.h"
#include "camera/picture_files.h"
#include "camera_test_support.h"
#include "link/controller_commands.h"
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

using Lines = std::vector<std::string>;
using LiveRender = CameraTest;

// The longest whole micrometre length within 100 pixels, yellow with an outlined label
// times the multiplier.
TEST_F(LiveRender, TheScaleBarIsTheLongestWholeMicrometreLengthWithin100Pixels) {
  EXPECT_EQ(scaleBarFor(3.0).lengthUm, 33);
  EXPECT_EQ(scaleBarFor(3.0).widthPx, 99);
  station.zoom = 0.5;
  Canvas* canvas = canvasNew(SurfaceWindow::Main);
  drawScaleBar(canvas, 3);
  canvasFree(canvas);
  EXPECT_EQ(recordedDisplayCalls(),
            (Lines{"rect 950,950,1050,955 pen 000000 fill ffff00", "text 966,955 000000 600 um",
                   "text 964,955 000000 600 um", "text 965,956 000000 600 um",
                   "text 965,954 000000 600 um", "text 965,955 ffff00 600 um"}));
}

// The spot and the writing area's outline (the whole display before the first recompute)
// are drawn into the picture before it is copied, retried after a reported failure.
TEST_F(LiveRender, DrawsThePictureWithSpotAndWritingAreaThenCopiesIt) {
  laser.laserOn = 1;
  laser.laserShiftX = 600;
  laser.laserShiftY = 500;
  recordedDisplayFail("blit", 2);
  EXPECT_EQ(RenderLive(SurfaceWindow::Display, displayFrame), 1);
  resetLiveRenderErrors();
  EXPECT_TRUE(hasLine("status: BitBlt to window has failed, error count: "));
  EXPECT_TRUE(hasLine("ellipse 595,523,605,533 pen ff0000", recordedDisplayCalls()));
  for (const auto& [x, y] : {std::pair{0, 500}, {1231, 1027}}) {
    const Rgb c = recordedScreenPixel(x, y);
    EXPECT_TRUE(c.red == 0 && c.green == 255 && c.blue == 0) << x << "," << y;
  }
}

TEST_F(LiveRender, SnapshotsAreNumberedOnEveryCallAndASavedOneIsTheNextCameraPicture) {
  const int first = snapshotNumber;
  cameraNumber = 0;
  RenderSnapshot(displayFrame.pixels, 1232, 1028, 0);
  EXPECT_TRUE(hasLine("text 10,10 plain " + std::to_string(first), recordedDisplayCalls()));
  RenderSnapshot(displayFrame.pixels, 1232, 1028, 1);
  EXPECT_EQ(snapshotNumber, first + 2);
  EXPECT_TRUE(hasLine("rect 492,411,739,616 pen 00ff00 hollow", recordedDisplayCalls()));
  EXPECT_TRUE(hasLine("save camera(0).jpg", recordedDisplayCalls()));
  EXPECT_EQ(cameraNumber, 1);
}

}  // namespace
