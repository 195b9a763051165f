// Wide view: the run over the nine cells and the places of their tiles.
#include "camera/wide_view.h"

#include <gtest/gtest.h>

#include "camera/live_view.h"
#include "camera_test_support.h"
#include "link/serial_link.h"
#include "station/responsive_wait.h"

namespace {

using Lines = std::vector<std::string>;
using WideViewTest = CameraTest;

Lines stretchedTiles() { return linesAfter("stretch main ", recordedDisplayCalls()); }

// Thirds of the display overlapping by one pixel, taken row by row in a serpentine.
TEST_F(WideViewTest, VisitsTheCellsInASerpentineAndReturns) {
  serialLink.positionUm[0] = 1000.0;
  serialLink.positionUm[1] = 2000.0;
  const uint64_t start = virtualClockNow();
  EXPECT_EQ(WideView(), 1);
  EXPECT_EQ(stretchedTiles(), (Lines{"0,0,411,343", "410,0,821,343", "821,0,1232,343",
                                     "821,343,1232,686", "410,343,821,686", "0,343,411,686",
                                     "0,686,411,1029", "410,686,821,1029", "821,686,1232,1029"}));
  EXPECT_EQ(serialLink.positionUm[0], 1000.0);
  EXPECT_EQ(serialLink.positionUm[1], 2000.0);
  EXPECT_EQ(wideViewShown, 1);
  // The first wait, six waits in the rows taken left to right, nine 1 ms waits.
  EXPECT_GE(virtualClockNow() - start, 200u + 6 * 200u + 9u);
  EXPECT_EQ(recordedDisplayCalls().back().substr(0, 4), "text");
}

// A stop confirmed before the first cell still lets that cell finish, then the scale bar
// is drawn and the stage goes back.
TEST_F(WideViewTest, AStopEndsTheVisitsButNotTheReturn) {
  serialLink.positionUm[0] = -50.0;
  serialLink.positionUm[1] = 75.0;
  recordedScriptClick(virtualClockNow(), QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::Yes);
  WideView();
  EXPECT_EQ(stretchedTiles().size(), 1u);
  EXPECT_EQ(station.stopRequested, 1);
  // 59 um fit in 100 pixels of the camera view; the tiles are a third of the size.
  EXPECT_EQ(recordedDisplayCalls().back(), "text 965,955 ffff00 177 um");
  EXPECT_EQ(serialLink.positionUm[0], -50.0);
  EXPECT_EQ(serialLink.positionUm[1], 75.0);
  EXPECT_EQ(writingActive, 0);
}

}  // namespace
