// The laser never stands exposing on one place, except where a program does it on purpose:
// every program of the station run whole on the virtual board, with the board's dwell
// report read after each.
#include "app/command_dispatch.h"
#include "camera/Basler_camera.h"
#include "link/jog_pad.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"
#include "sim/virtual_camera.h"

using namespace std::string_literals;

namespace {

class NoDwell : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    virtualCameraReset();
    camera.gain = 20;
    camera.exposureTime = 30000.0;
    ASSERT_EQ(CameraConnect(camera), 1);
    CameraSetup(camera, 4);
    openWithSpeeds(1000, 1000, 1000);
  }
};

// A mask of three parts and a list of lines, written in one run without a stop, with a stop
// answered "No" and with one answered "Yes" in the middle of the strokes; focusing; every
// jog key and a held jog pad; the two row tests. Blink holds the laser on one place for
// its time and the black tape test for its two one-second waits, on purpose.
TEST_F(NoDwell, HowLongEachProgramStandsExposing) {
  paintPicture(maskImage, 300, 300, 340, 320, 0);
  paintPicture(maskImage, 480, 470, 530, 540, 0);
  paintPicture(maskImage, 600, 650, 612, 700, 0);
  linePattern.active = 1;
  linePattern.segments = {{0, 0, 300, 0, 1}, {300, 0, 300, 200, 3}, {-100, 50, -100, 400, 6}};
  laser.laserShiftX = 200;
  const IntRect& pad = jogPad.rects[1];  // +X
  const auto writeStoppedAt = [](uint64_t afterMs, Answer answer) {
    recordedScriptClick(virtualClockNow() + afterMs, QueuedTarget::MainWindow);
    recordedQueueAnswer(answer);
    dispatchCommand(IDC_START_WRITING);
  };
  const std::pair<const char*, std::function<void()>> programs[] = {
      {"writing", [] { dispatchCommand(IDC_START_WRITING); }},
      {"writing, No", [&] { writeStoppedAt(6000, Answer::No); }},
      {"writing, Yes", [&] { writeStoppedAt(9000, Answer::Yes); }},
      {"focusing",
       [] {
         MoveAxisAndWait(serialLink, 2, -450.0);  // the sharpest place soon after the lift
         dispatchCommand(IDC_FOCUS);
       }},
      {"jogging",
       [&pad] {
         for (int key : {0x25, 0x26, 0x27, 0x28, 0x21, 0x22}) onMainKeyDown(key);
         recordedScriptAction(virtualClockNow() + 500, [] { onMainLeftButtonUp(); });
         onMainLeftButtonDown((pad.left + pad.right) / 2, (pad.top + pad.bottom) / 2);
       }},
      {"long stroke test", [] { dispatchCommand(IDM_LONG_STROKE_TEST); }},
      {"PR test", [] { dispatchCommand(IDM_PR_TEST); }},
      {"Blink",
       [] {
         station.insideVoltage = 0.0;  // the switch alone
         dispatchCommand(IDC_BLINK);
       }},
      {"black tape test", [] { dispatchCommand(IDM_BLACK_TAPE_TEST); }},
  };
  VirtualBoard& board = virtualSerialBoard();
  std::map<std::string, std::vector<BoardDwell>> dwelled;
  for (const auto& [name, run] : programs) {
    board.dwell = DwellWatch();
    board.exposure.clear();
    recordedFeedbackReset();
    run();
    virtualClockAdvance(2000);  // the board ends the last move
    EXPECT_EQ(board.exposure.empty(), name == "focusing"s || name == "jogging"s || name == "Blink"s)
        << name;
    EXPECT_EQ(hasLine("question Warning"), std::string(name).find(", ") != std::string::npos);
    for (const BoardDwell& d : boardDwells(board, virtualClockNow())) {
      dwelled[name].push_back(d);
      std::printf("%s: %s after %s until %s\n", name, dwellLine(d).c_str(), d.commandBefore.c_str(),
                  d.commandEnding.c_str());
    }
  }
  // What the programs still do at 9600 baud, kept here until it is decided: the stage stands
  // exposed while the program polls for the end of a move (two position queries and a
  // 10 ms slice, about 30 ms a cycle) and while it sends the next move's speeds and
  // targets (about 1 ms a byte): at every raster turnaround (about 50 ms at a stroke's
  // end, 61 ms after the step to the next), where touching lines meet, at a line's end
  // before G 5 0, and at the row tests' 1 um steps, which keep the laser up by design.
  const std::map<std::string, std::pair<size_t, uint64_t>> countAndLongestMs = {
      {"writing", {113, 113}},         {"writing, No", {113, 113}}, {"writing, Yes", {3, 113}},
      {"long stroke test", {150, 51}}, {"PR test", {999, 47}},      {"Blink", {1, 506}},
      {"black tape test", {5, 2024}}};
  for (const auto& [name, dwells] : dwelled) {
    uint64_t longest = 0;
    for (const BoardDwell& d : dwells) longest = std::max(longest, d.durationMs);
    EXPECT_EQ(std::pair(dwells.size(), longest), countAndLongestMs.at(name)) << name;
  }
  EXPECT_EQ(dwelled.size(), countAndLongestMs.size()) << "focusing and jogging never dwell";
  // Blink at 0 V dwells by the switch pin alone; the tape test's first dwell is at 4.7 V.
  const BoardDwell& tape = dwelled["black tape test"].at(0);
  EXPECT_EQ(tape.laserPwm, 239);
  EXPECT_EQ(tape.commandBefore, "G 5 239");
}

}  // namespace
