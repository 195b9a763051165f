// The live picture's overlays, the scale bar and the snapshot.
#include "camera/live_render.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "camera/picture_files.h"
#include "camera_test_support.h"

namespace {

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

// The spot, then the writing area, then the copy, retried after a reported failure.
TEST_F(LiveRender, DrawsThePictureWithSpotAndWritingAreaThenCopiesIt) {
  laser.laserOn = 1;
  laser.laserShiftX = 600;
  laser.laserShiftY = 500;
  recordedDisplayFail("blit", 2);
  EXPECT_EQ(RenderLive(SurfaceWindow::Display, displayFrame), 1);
  resetLiveRenderErrors();
  EXPECT_TRUE(hasLine("status: BitBlt to window has failed, error count: "));
  const Lines& calls = recordedDisplayCalls();
  const auto spot = std::find(calls.begin(), calls.end(), "ellipse 595,523,605,533 pen ff0000");
  const auto rect = std::find(calls.begin(), calls.end(), "rect 0,0,1232,1028 pen 00ff00 hollow");
  const auto blit = std::find(calls.begin(), calls.end(), "blit display 0,0");
  ASSERT_NE(blit, calls.end());
  EXPECT_LT(spot, rect);
  EXPECT_LT(rect, blit);
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
