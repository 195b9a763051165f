// The live picture's overlays, the snapshot and the live-view switch.
#include "camera/live_render.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "camera_test_support.h"

namespace {

using Lines = std::vector<std::string>;

bool hasCall(const std::string& line) {
  const Lines& calls = recordedDisplayCalls();
  return std::find(calls.begin(), calls.end(), line) != calls.end();
}

TEST(ScaleBar, IsTheLongestWholeMicrometreLengthWithin100Pixels) {
  EXPECT_EQ(scaleBarFor(0.5).lengthUm, 200);
  EXPECT_EQ(scaleBarFor(0.5).widthPx, 100);
  EXPECT_EQ(scaleBarFor(3.0).lengthUm, 33);
  EXPECT_EQ(scaleBarFor(3.0).widthPx, 99);
  EXPECT_EQ(scaleBarFor(0.3).lengthUm, 333);
  EXPECT_EQ(scaleBarFor(0.3).widthPx, 99);
}

TEST(ScaleBar, IsAYellowBarWithAnOutlinedLabelTimesTheMultiplier) {
  resetCameraWorld();
  station.zoom = 0.5;
  Canvas* canvas = canvasNew(SurfaceWindow::Main);
  DrawScaleBar(canvas, 3);
  canvasFree(canvas);
  EXPECT_EQ(recordedDisplayCalls(),
            (Lines{"rect 950,950,1050,955 pen 000000 fill ffff00", "text 966,955 000000 600 um",
                   "text 964,955 000000 600 um", "text 965,956 000000 600 um",
                   "text 965,954 000000 600 um", "text 965,955 ffff00 600 um"}));
}

TEST(LiveRender, DrawsThePictureWithSpotAndWritingAreaThenCopiesIt) {
  resetCameraWorld();
  laser.laserOn = 1;
  laser.laserShiftX = 600;
  laser.laserShiftY = 500;
  EXPECT_EQ(RenderLive(SurfaceWindow::Display, displayFrame), 1);
  const IntRect area = station.writingAreaRect;
  const std::string areaLine = "rect " + std::to_string(area.left) + "," +
                               std::to_string(area.top) + "," + std::to_string(area.right) + "," +
                               std::to_string(area.bottom) + " pen 00ff00 hollow";
  const Lines& calls = recordedDisplayCalls();
  const auto spot = std::find(calls.begin(), calls.end(), "ellipse 595,523,605,533 pen ff0000");
  const auto rect = std::find(calls.begin(), calls.end(), areaLine);
  const auto blit = std::find(calls.begin(), calls.end(), "blit display 0,0");
  ASSERT_NE(spot, calls.end());
  ASSERT_NE(rect, calls.end());
  ASSERT_NE(blit, calls.end());
  EXPECT_LT(spot, rect);
  EXPECT_LT(rect, blit);
  laser.laserOn = 0;
  laser.laserShiftX = laser.laserShiftY = 0;
}

TEST(LiveRender, ACopyFailureIsReportedAndRetried) {
  resetCameraWorld();
  recordedDisplayFail("blit", 2);
  EXPECT_EQ(RenderLive(SurfaceWindow::Display, displayFrame), 1);
  EXPECT_TRUE(recordedCall("status: BitBlt to window has failed, error count: "));
  EXPECT_TRUE(hasCall("blit display 0,0"));
  resetLiveRenderErrors();
}

TEST(Snapshot, IsPlacedAtTheOriginAndNumberedOnEveryCall) {
  resetCameraWorld();
  const int first = snapshotNumber;
  RenderSnapshot(displayFrame.pixels, 1232, 1028, 0);
  RenderSnapshot(displayFrame.pixels, 1232, 1028, 0);
  EXPECT_EQ(snapshotNumber, first + 2);
  EXPECT_TRUE(hasCall("text 10,10 plain " + std::to_string(first + 1)));
  EXPECT_TRUE(hasCall("blit main 0,0"));
}

}  // namespace
