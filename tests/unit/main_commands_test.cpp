// The main window's own commands: the live view switch, "Blink" and its box, the check
// boxes and the menu entries that do nothing.
#include "app/command_dispatch.h"
#include "camera/live_view_control.h"
#include "resources/resource.h"
#include "station_fixture.h"

using MainCommands = StationTest;
using Calls = std::vector<std::string>;

// Mode 2 brings back the state before the last switch (as around a dialog). Closing the
// window stops the live view and waits.
TEST_F(MainCommands, VideoOnAndOffRestoreAndClosing) {
  setLiveView(0);
  recordedFeedbackReset();
  dispatchCommand(IDC_VIDEO_ON);
  EXPECT_EQ(recordedCalls(), (Calls{"radio 2112-2113: 2112", "timer 1: 200 ms", "focus main"}));
  dispatchCommand(IDC_VIDEO_OFF);
  setLiveView(2);
  EXPECT_EQ(setLiveView(4), 1) << "it was on before it was switched off";
  const uint64_t startMs = virtualClockNow();
  onMainWindowDestroyed();
  EXPECT_EQ(setLiveView(4), 0);
  EXPECT_EQ(virtualClockNow() - startMs, 100u);
}

// The box shows the duration used, clamped; text that does not parse keeps the one before.
// The laser is on for that time, or until a click on the display or the window closing.
TEST_F(MainCommands, BlinkLightsTheLaserForTheBoxsTimeOrUntilAStop) {
  const std::pair<const char*, uint64_t> typed[] = {{"0", 1}, {"99999", 5000}, {"abc", 5000}};
  for (const auto& [text, ms] : typed) {
    recordedFeedbackReset();
    recordedSetBoxText(Box::Blink, text);
    const uint64_t startMs = virtualClockNow();
    dispatchCommand(IDC_BLINK);
    EXPECT_EQ(recordedBoxText(Box::Blink), std::to_string(ms));
    EXPECT_NEAR(virtualClockNow() - startMs, ms + 10, 10) << text;
    EXPECT_EQ(linesAfter("radio 3000-3001: ", recordedCalls()), (Calls{"3000", "3001"}));
  }
  for (auto stop : {+[](uint64_t at) { recordedScriptClick(at, QueuedTarget::DisplayWindow); },
                    +[](uint64_t at) { recordedScriptQuit(at); }}) {
    const uint64_t startMs = virtualClockNow();
    stop(startMs + 100);  // during a blink of 5000 ms
    dispatchCommand(IDC_BLINK);
    EXPECT_LT(virtualClockNow() - startMs, 200u);
    EXPECT_EQ(laser.laserOn, 0);
  }
}

// The menu's "Stop" and "Start Vector Writing" and unknown ids do nothing.
TEST_F(MainCommands, TheLayerBoxesToggleAndTheMenuEntriesThatDoNothingDoNothing) {
  for (int id : {IDC_MASK_LAYER, IDC_MASK_LAYER, IDC_LINES_LAYER, IDC_MARK_LAYER,
                 IDC_CENTER_WRITING_ONLY, IDM_STOP, IDM_START_VECTOR_WRITING, 31999})
    dispatchCommand(id);
  EXPECT_EQ(recordedCalls(), (Calls{"check 2200: 0", "check 2200: 1", "check 2201: 0",
                                    "check 2203: 0", "check 2121: 1"}));
  EXPECT_EQ(maskImage.valid + linesEnabled + alignmentMarkImage.valid + centerWritingOnly, 2);
}
