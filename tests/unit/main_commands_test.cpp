// The main window's own commands as the operator meets them: the live view switch, the
// "Blink" button and its box, the check boxes, the menu entries that do nothing, and the
// first states after the window is created.
#include "app/command_dispatch.h"
#include "app/shell_commands.h"
#include "camera/live_view_control.h"
#include "jobs/raster_writing.h"
#include "resources/resource.h"
#include "station_fixture.h"

namespace {

class MainCommands : public StationTest {
 protected:
  void SetUp() override {
    StationTest::SetUp();
    blinkMs = 500;
    centerWritingOnly = 0;
    setLiveView(0);
    setLiveView(0);  // remembered state off as well
    recordedFeedbackReset();
  }
};

using Calls = std::vector<std::string>;

TEST_F(MainCommands, VideoOnStartsTheTimerAndOffStopsIt) {
  dispatchCommand(IDC_VIDEO_ON);
  EXPECT_EQ(recordedCalls(), (Calls{"radio 2112-2113: 2112", "timer 1: 200 ms", "focus main"}));
  EXPECT_EQ(setLiveView(4), 1);

  recordedFeedbackReset();
  dispatchCommand(IDC_VIDEO_OFF);
  EXPECT_EQ(recordedCalls(), (Calls{"timer 1: killed", "radio 2112-2113: 2113", "focus main"}));
  EXPECT_EQ(setLiveView(4), 0);
  EXPECT_EQ(setLiveView(3), 1) << "it was on before it was switched off";
}

TEST_F(MainCommands, RestoreBringsBackTheStateBeforeADialog) {
  for (int before : {1, 0}) {
    setLiveView(before);
    setLiveView(0);  // a dialog opens
    setLiveView(2);  // and closes
    EXPECT_EQ(setLiveView(4), before);
  }
}

TEST_F(MainCommands, OneFrameUnknownModesAndQueriesLeaveTheTimerAlone) {
  setLiveView(1);
  recordedFeedbackReset();
  setLiveView(7);  // no camera here: the frame is the test pattern
  setLiveView(5);
  setLiveView(3);
  const Calls& calls = recordedCalls();
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls.back(), "focus main");
  EXPECT_EQ(setLiveView(4), 1);
}

// The box shows the duration used; text that does not parse keeps the one before it.
TEST_F(MainCommands, BlinkClampsTheDurationShowsItAndSwitchesTheLaserBackOff) {
  const std::pair<const char*, uint64_t> typed[] = {
      {"0", 1}, {"99999", 5000}, {"250", 250}, {"abc", 250}, {"-7", 1}};
  for (const auto& [text, ms] : typed) {
    recordedSetBoxText(Box::Blink, text);
    const uint64_t startMs = virtualClockNow();
    dispatchCommand(IDC_BLINK);
    EXPECT_EQ(blinkMs, static_cast<int>(ms)) << text;
    EXPECT_EQ(recordedBoxText(Box::Blink), std::to_string(ms));
    EXPECT_NEAR(virtualClockNow() - startMs, ms + 10, 10) << text;
    EXPECT_EQ(laser.laserOn, 0);
  }
}

TEST_F(MainCommands, LayerBoxesStartCheckedAndToggleThePicturesAndLines) {
  showFirstStates();
  for (const char* box : {"check 2200: 1", "check 2201: 1", "check 2203: 1"})
    EXPECT_TRUE(hasLine(box)) << box;
  recordedFeedbackReset();
  dispatchCommand(IDC_MASK_LAYER);
  dispatchCommand(IDC_MASK_LAYER);
  dispatchCommand(IDC_LINES_LAYER);
  dispatchCommand(IDC_MARK_LAYER);
  dispatchCommand(IDC_CENTER_WRITING_ONLY);
  EXPECT_EQ(recordedCalls(), (Calls{"check 2200: 0", "check 2200: 1", "check 2201: 0",
                                    "check 2203: 0", "check 2121: 1"}));
  EXPECT_EQ(maskImage.valid + linesEnabled + alignmentMarkImage.valid + centerWritingOnly, 2);
}

TEST_F(MainCommands, MenuStopAndStartVectorWritingChangeNothingAndClosingStopsTheLiveView) {
  setLiveView(1);
  recordedFeedbackReset();
  uint64_t startMs = virtualClockNow();
  dispatchCommand(IDM_STOP);
  dispatchCommand(IDM_START_VECTOR_WRITING);
  dispatchCommand(31999);  // no such command
  EXPECT_TRUE(recordedCalls().empty());
  EXPECT_EQ(virtualClockNow(), startMs);
  EXPECT_EQ(setLiveView(4), 1);
  // Closing the window stops the live view and waits.
  onMainWindowDestroyed();
  EXPECT_EQ(setLiveView(4), 0);
  EXPECT_EQ(virtualClockNow() - startMs, 100u);
}

TEST_F(MainCommands, FirstStatesEndWithTheBlinkBoxAndTheLiveViewOff) {
  setLiveView(1);
  recordedFeedbackReset();
  onMainWindowCreated();
  const Calls& calls = recordedCalls();
  ASSERT_GE(calls.size(), 4u);
  EXPECT_EQ(calls.front(), "radio 32001-32002: 32001");
  EXPECT_EQ(recordedBoxText(Box::Exposure), "30000");
  EXPECT_EQ(Calls(calls.end() - 4, calls.end()),
            (Calls{"box Blink: 500", "timer 1: killed", "radio 2112-2113: 2113", "focus main"}));
}

}  // namespace
