// Wide view on the virtual board: the nine stage positions in their order, the places of
// their tiles, and the way back.
#include "camera/wide_view.h"

#include "camera/Basler_camera.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "sim/recorded_display.h"
#include "sim/virtual_camera.h"

namespace {

using Lines = std::vector<std::string>;

class WideViewTest : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    recordedDisplayReset();
    virtualCameraReset();  // none attached: every tile is the test pattern
    camera.connected = 0;
    camera.camera = nullptr;
    openWithSpeeds(1000, 1000, 1000);
    MoveXY(1000.0, 2000.0, 1000);
    virtualSerialClearWritten();
  }
  // The XY positions the board was sent (an X move and the Y move after it), in pitches
  // of 737 x 614.96 um from the start, rounded.
  static std::vector<std::pair<long, long>> pitchesSent() {
    std::vector<std::pair<long, long>> pitches;
    double x = 0;
    for (const std::string& c : sentCommands()) {
      if (c[0] == 'm') x = StepsToMicrometres(0, std::stoi(c.substr(1))) - 1000.0;
      if (c[0] != 'M') continue;
      const double y = StepsToMicrometres(1, std::stoi(c.substr(1))) - 2000.0;
      pitches.push_back({std::lround(x / 737.0), std::lround(y / 614.9642857142857)});
      EXPECT_NEAR(x, 737.0 * pitches.back().first, 1.0);
      EXPECT_NEAR(y, 614.9642857142857 * pitches.back().second, 1.0);
    }
    return pitches;
  }
};

Lines stretchedTiles() { return linesAfter("stretch main ", recordedDisplayCalls()); }

// The first row is the one a stage y larger by a pitch shows, drawn at the top; thirds of
// the display overlapping by one pixel, taken row by row in a serpentine.
TEST_F(WideViewTest, VisitsTheNineCellsInASerpentineAndReturns) {
  const uint64_t start = virtualClockNow();
  EXPECT_EQ(WideView(), 1);
  EXPECT_EQ(pitchesSent(), (std::vector<std::pair<long, long>>{{1, -1},
                                                               {-1, 1},
                                                               {0, 1},
                                                               {1, 1},
                                                               {1, 0},
                                                               {0, 0},
                                                               {-1, 0},
                                                               {-1, -1},
                                                               {0, -1},
                                                               {1, -1},
                                                               {0, 0}}));
  EXPECT_EQ(stretchedTiles(), (Lines{"0,0,411,343", "410,0,821,343", "821,0,1232,343",
                                     "821,343,1232,686", "410,343,821,686", "0,343,411,686",
                                     "0,686,411,1029", "410,686,821,1029", "821,686,1232,1029"}));
  // The first wait, six waits in the rows taken left to right, nine 1 ms waits.
  EXPECT_GE(virtualClockNow() - start, 200u + 6 * 200u + 9u);
  EXPECT_EQ(writingActive, 0);
}

// A stop confirmed before the first cell still lets that cell finish, then the scale bar
// is drawn and the stage goes back.
TEST_F(WideViewTest, AStopEndsTheVisitsButNotTheReturn) {
  station.zoom = station.zoomReset;
  recordedScriptClick(virtualClockNow(), QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::Yes);
  WideView();
  EXPECT_EQ(stretchedTiles().size(), 1u);
  EXPECT_EQ(station.stopRequested, 1);
  // 59 um fit in 100 pixels of the camera view; the tiles are a third of the size.
  EXPECT_EQ(recordedDisplayCalls().back(), "text 965,955 ffff00 177 um");
  EXPECT_EQ(pitchesSent().back(), (std::pair<long, long>{0, 0}));
}

}  // namespace
