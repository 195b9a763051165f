// Coarse focusing; the virtual sample is sharp at stage Z = 0, and X rests at 0.
#include <cstring>

#include "app/command_dispatch.h"
#include "app/startup.h"
#include "camera/Basler_camera.h"
#include "camera/live_view_control.h"
#include "jobs/coarse_focusing.h"
#include "jobs/focus_measure.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "resources/resource.h"
#include "sim/virtual_camera.h"

namespace {

// The station as telvane-sim.exe starts it: no Config.txt, so every stored axis speed is 0
// and goes to the board as 1 um/s, the virtual camera set up, the lamp and the live view on.
class Focusing : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    virtualCameraReset();
    startUpDevices();
    dispatchCommand(IDC_ILLUMINATION_ON);
    dispatchCommand(IDC_VIDEO_ON);
    virtualSerialClearWritten();
  }
};

// A grey frame (binned 100) with bright 4 x 4 pixel blocks (binned 200) at binned places
// (i, j), alike in the three colours. A lone spot counts at itself and k before and after
// it along i (one fewer within k of the edge): 400 at itself, 100 at each of the others.
float sharpnessWithSpots(const std::vector<std::pair<int, int>>& spots) {
  static ImageBuffer frame;
  std::memset(frame.pixels, 100, kImageBufferBytes);
  for (const auto& [i, j] : spots)
    for (int y = 4 * j; y < 4 * j + 4; ++y) std::memset(frame.pixels + y * 4928 + 16 * i, 200, 16);
  return frameSharpness(frame);
}

TEST(FocusMeasure, ContrastIsMeasuredAtOffsetFiveWhereElevenPlacesOrMoreHaveIt) {
  const std::pair<int, int> lone[] = {{50, 50}, {100, 50}, {150, 50}},
                            edge[] = {{7, 100}, {7, 150}};
  EXPECT_FLOAT_EQ(sharpnessWithSpots({lone[0], lone[1], lone[2], edge[0]}),
                  (3 * 600 + 500) / 11.0 / 100.0);
  EXPECT_FLOAT_EQ(sharpnessWithSpots({lone[0], lone[1], edge[0], edge[1]}), 0.0001f) << "10 places";
  // Two spots k apart along j see each other: 300 at each instead of 400.
  EXPECT_FLOAT_EQ(sharpnessWithSpots({{50, 50}, {50, 55}, {150, 150}, {150, 155}}),
                  2 * (2 * 300 + 4 * 100) / 12.0 / 100.0);
  EXPECT_EQ(recordedBoxText(Box::Status), "1.667");
}

// The search ends past a peak only when the peak stands 1.2 x above the least value and
// above 0.1, and the value has fallen below 80 % of it (the best at step 10, now step 14).
TEST(FocusSearch, TheSearchEndsPastAClearPeak) {
  EXPECT_TRUE(searchPassedPeak(1.0f, 0.2f, 0.1f, 14, 10));
  EXPECT_FALSE(searchPassedPeak(1.0f, 0.2f, 0.8f, 14, 10)) << "not below 80 % of the peak";
  EXPECT_FALSE(searchPassedPeak(1.0f, 0.9f, 0.1f, 14, 10)) << "the peak not 1.2 x the least";
  EXPECT_FALSE(searchPassedPeak(0.09f, 0.01f, 0.01f, 14, 10)) << "the peak not above 0.1";
}

// "Focus" with Z 450 um below focus (Device Configuration's "MoveTo"). No Z speed was ever
// set: the waits' time-outs count 1 um/s (over 1000 s for the lift) while the board runs Z at
// its slowest, 100 um/s, and each wait ends at the board's arrival report. Lifted 500 um, the
// walk down in 5 um steps is sharpest at step 10 and, though the value falls at once, ends
// four steps later; Z then goes to the X reading taken at the best step, 0 (the crossing the
// station has always had), where the picture is sharp again.
TEST_F(Focusing, AsTheVirtualStationStartsTheSearchEndsPastThePeakAtTheBoardsPace) {
  MoveAxisAndWait(serialLink, 2, -450.0);
  virtualSerialClearWritten();
  recordedFeedbackReset();
  const uint64_t startMs = virtualClockNow();
  dispatchCommand(IDC_FOCUS);  // lamp on, lift 500 um, 300 um/s

  std::vector<std::string> zMoves = sentCommands("L");
  EXPECT_EQ(joined(zMoves, 0, 3), "L80,L72,L64") << "lifted 500 um, then 5 um steps";
  EXPECT_EQ(zMoves.size(), 16u) << "the lift, steps 0 to 13, the best place";
  EXPECT_EQ(zMoves.back(), "L0");
  EXPECT_EQ(linesAfter("status: Focusing [", recordedCalls()).size(), 14u);
  EXPECT_TRUE(hasLine("status: Course Focusing Completed"));
  const std::vector<std::string> waits = linesAfter("status: Z arrived(1): ", recordedCalls());
  ASSERT_EQ(waits.size(), 16u) << "every wait ended at the arrival report";
  // The lift: 500 um at 100 um/s and the report's bytes, against its 1001 s time-out.
  EXPECT_NEAR(std::stod(waits[0]), 5010.0, 20.0) << waits[0];
  EXPECT_NE(waits[0].find("/1001000 "), std::string::npos) << waits[0];
  // The lift 5 s, 14 steps of 5 um, 25 um back up to the best place, the 100 ms settling,
  // the line time of every command and reply at 9600 baud.
  EXPECT_NEAR(double(virtualClockNow() - startMs), 6750.0, 250.0);

  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], 0.0);
  EXPECT_GT(frameSharpness(displayFrame), 0.5f) << "the last frame shown, in focus";
  EXPECT_EQ(serialLink.speedUmPerS[0], 600) << "X left at twice the speed";
  EXPECT_EQ(station.focusingActive, 0);
  EXPECT_EQ(setLiveView(kLiveViewQueryNow), 1) << "the live view runs again";
}

// "Focus" with X on its lower limit: the first step ends the search, the flat frames never
// reach 0.1, and Z goes back to the start, the X reading of -1000 um. While another
// operation runs the command does nothing.
TEST_F(Focusing, AFlatPictureOnTheLowerLimitEndsWithTheErrorAndZAtTheStartReading) {
  virtualSerialBoard().axes[0].minMachineSteps = -6400;  // the X switch at -1000 um
  MoveAxisAndWait(serialLink, 0, -2000.0);
  ASSERT_NE(serialLink.lowerLimit[0], 0.0);
  virtualCameraUseFixedFrame(128);
  virtualSerialClearWritten();
  writingActive = 1;
  dispatchCommand(IDC_FOCUS);
  EXPECT_TRUE(sentCommands().empty());
  writingActive = 0;
  recordedFeedbackReset();
  dispatchCommand(IDC_FOCUS);

  EXPECT_EQ(joined(sentCommands(), 0, 2), "D 6 0,D 7 5") << "laser off, lamp on";
  EXPECT_EQ(linesAfter("status: Focusing [", recordedCalls()).size(), 1u);
  EXPECT_TRUE(hasLine("message Error in focusing: Please, adjust the sample posion"));
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], -1000.0);
}

TEST_F(Focusing, AStopDuringTheLiftEndsTheRunWithZLeftWhereItIs) {
  recordedScriptClick(virtualClockNow() + 100, QueuedTarget::DisplayWindow);
  recordedQueueAnswer(Answer::Yes);
  CoarseFocusing(500.0, 300, displayFrame);

  EXPECT_FALSE(hasLine("status: Stage going down"));
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 2, virtualClockNow() + 5000), 500.0, 1.0);
  EXPECT_EQ(station.focusingActive, 0);
  EXPECT_EQ(station.stopRequested, 1);
}

}  // namespace
