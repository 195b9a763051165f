// The writing run, the writing place, what may start while something runs, and the
// display's mouse, on the virtual board.
#include <algorithm>
#include <functional>

#include "app/command_dispatch.h"
#include "app/display_pointer.h"
#include "link/controller_commands.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"
#include "sim/recorded_dialog.h"

namespace {

using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

class WritingRun : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    recordedDisplayReset();
    recordedDialogReset();
    openWithSpeeds(2000, 2000, 500);
  }
  // The stage commands (moves of the three axes) among those sent since the last clear.
  static Lines moves() {
    Lines sent = sentCommands();
    std::erase_if(sent, [](const std::string& c) { return c.find_first_of("mML") != 0; });
    return sent;
  }
  static size_t indexOf(const Lines& lines, const std::string& line) {
    return static_cast<size_t>(std::find(lines.begin(), lines.end(), line) - lines.begin());
  }
};

// Darkened before anything moves; the live view stays frozen while it writes.
TEST_F(WritingRun, WithEveryLayerOffTheRunApproachesTakesUpBacklashAndReturns) {
  virtualSerialBoard().axes[1].machineSteps = 1600;  // Y at 1000 um
  openWithSpeeds(2000, 2000, 500);
  laser.laserShiftX = 100;
  laser.laserShiftY = 50;
  laser.laserShiftZ = 10;
  maskImage.valid = alignmentMarkImage.valid = linesEnabled = 0;  // the operator unchecked them
  SwitchIllumination(1);
  virtualSerialClearWritten();
  recordedFeedbackReset();
  size_t drawnByTheTimer = 1;
  recordedScriptAction(virtualClockNow() + 200, [&] {
    drawnByTheTimer = recordedDisplayCalls().size();
    onMainTimer(1);
    drawnByTheTimer = recordedDisplayCalls().size() - drawnByTheTimer;
  });
  dispatchCommand(IDC_START_WRITING);
  // To the writing place, Z to the focus plus the laser's Z, down-up twice, and back.
  EXPECT_THAT(moves(),
              ElementsAre("m640", "M1680", "L16", "L12", "L16", "L12", "L16", "L0", "m0", "M1600"));
  const Lines sent = sentCommands(), &calls = recordedCalls();
  EXPECT_LT(std::max(indexOf(sent, "D 7 0"), indexOf(sent, "D 6 0")), indexOf(sent, "m640"));
  EXPECT_LT(indexOf(calls, "button 2202: Stop"),
            indexOf(calls, "box Progress: All Writings finished"));
  EXPECT_LT(indexOf(calls, "box Progress: All Writings finished"),
            indexOf(calls, "button 2202: Start Writing"));
  EXPECT_TRUE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(0).txt"));
  EXPECT_EQ(drawnByTheTimer, 0u);
  EXPECT_EQ(writingActive + station.moveBusy, 0);
}

// The question darkens the laser at once. "No" brings the voltage back and the line goes
// on; "Yes" lets the stroke under way run to its end dark, and only then does the stage
// go back, from where the position model says it is.
TEST_F(WritingRun, AStopDuringALineLetsItsStrokeFinishDarkBeforeTheReturn) {
  maskImage.valid = alignmentMarkImage.valid = 0;
  station.line1Speed = 50;
  linePattern.segments = {{0, 0, 400, 0, 1}};  // 8 s along X
  VirtualBoard& board = virtualSerialBoard();
  for (Answer answer : {Answer::No, Answer::Yes}) {
    board.exposure.clear();
    virtualSerialClearWritten();
    recordedScriptClick(virtualClockNow() + 4000, QueuedTarget::DisplayWindow);
    recordedQueueAnswer(answer);
    dispatchCommand(IDC_START_WRITING);
    Lines voltages = sentCommands();
    std::erase_if(voltages, [](const std::string& c) { return c.rfind("G 5 ", 0) != 0; });
    ASSERT_FALSE(board.exposure.empty());
    const double litUntilUm = board.exposure.back().x1Um;
    if (answer == Answer::No) {
      EXPECT_THAT(voltages, ElementsAre("G 5 66", "G 5 0", "G 5 66", "G 5 0"));
      EXPECT_NEAR(litUntilUm, 400.0, 2.0);
      continue;
    }
    EXPECT_THAT(voltages, ElementsAre("G 5 66", "G 5 0"));
    EXPECT_NEAR(litUntilUm, 196.0, 2.0) << "dark from the click on";
    // Within the 2 um in which the move counts as arrived.
    EXPECT_NEAR(board.axes[0].fromSteps / 6.4, 400.0, 2.0) << "the return starts at the end";
  }
}

// A click on the display stops a move on the board. The stop it leaves does not end the
// next run; a run counts as writing from its first step, so a click during its approach
// asks, and "Yes" skips the writing but not the return.
TEST_F(WritingRun, AStopLeftFromAnEarlierClickIsClearedAndOneDuringTheApproachSkipsTheWriting) {
  openWithSpeeds(100, 100, 100);
  recordedSetBoxText(Box::PositionX, "1000");  // ten seconds at 100 um/s
  recordedScriptClick(virtualClockNow() + 500, QueuedTarget::DisplayWindow);
  dispatchCommand(IDC_MOVE_X);
  VirtualBoard& board = virtualSerialBoard();
  const double stoppedAtUm = boardAxisUm(board, 0, virtualClockNow());
  EXPECT_NEAR(stoppedAtUm, 50.0, 5.0);
  EXPECT_EQ(station.stopRequested, 1);

  maskImage.valid = alignmentMarkImage.valid = 0;
  linePattern.segments = {{0, 0, 10, 0, 1}};
  laser.laserShiftX = 1000;  // 1.7 s of approach
  for (Answer answer : {Answer::No, Answer::Yes}) {
    board.exposure.clear();
    recordedFeedbackReset();
    recordedScriptClick(virtualClockNow() + 500, QueuedTarget::DisplayWindow);
    recordedQueueAnswer(answer);
    dispatchCommand(IDC_START_WRITING);
    EXPECT_TRUE(hasLine("question Warning: Do you want to stop writing, now ?"));
    EXPECT_EQ(board.exposure.empty(), answer == Answer::Yes);
    EXPECT_DOUBLE_EQ(serialLink.positionUm[0], stoppedAtUm) << "back at the start";
  }
}

// The run shows the whole writing area before it prepares the pattern.
TEST_F(WritingRun, TheOperatorsZoomDoesNotChangeWhatIsWritten) {
  resetPatternStores();
  linesEnabled = 0;
  paintPicture(maskImage, 500, 500, 504, 502, 0);
  Lines written[2];
  for (Lines& strokes : written) {
    virtualSerialClearWritten();
    dispatchCommand(IDC_START_WRITING);
    strokes = moves();
    virtualClockAdvance(1000);  // the board ends the return
    dispatchCommand(IDC_ZOOM_IN);
  }
  EXPECT_GT(written[0].size(), 10u);
  EXPECT_EQ(written[0], written[1]);
}

// Dx and Dy (clamped to 300 um) move by themselves, or to the writing place: the laser's
// place plus the offsets, reached lifted by "Go to Writing" and left by its second press or
// by a run, which takes the offsets anew.
TEST_F(WritingRun, GoToWritingAndTheOffsets) {
  laser.laserShiftX = 100;
  station.zLiftUm = 10;
  maskImage.valid = alignmentMarkImage.valid = linesEnabled = 0;
  recordedSetBoxText(Box::Dx, "1000");
  dispatchCommand(IDC_APPLY_DX);
  EXPECT_THAT(moves(), ElementsAre("m1920"));
  EXPECT_EQ(boardPin(virtualSerialBoard(), kBoardLampPin), 0) << "lit for the snapshot only";
  virtualSerialClearWritten();
  dispatchCommand(IDC_GO_TO_WRITING);
  // Z lifted from the focus height, which is taken from the X reading (300 um).
  EXPECT_THAT(moves(), ElementsAre("m2560", "M0", "L496", "L492", "L496", "L492", "L496"));
  EXPECT_TRUE(hasLine("button 2205: Cancel writing"));
  virtualSerialClearWritten();
  recordedSetBoxText(Box::Dy, "-12.5");
  dispatchCommand(IDC_APPLY_DY);
  dispatchCommand(IDC_GO_TO_WRITING);
  EXPECT_THAT(moves(), ElementsAre("m2560", "M-20", "m1920", "M0", "L480"));

  dispatchCommand(IDC_GO_TO_WRITING);
  recordedSetBoxText(Box::Dx, "-20");
  dispatchCommand(IDC_START_WRITING);
  EXPECT_DOUBLE_EQ(station.offsetX, -20.0);
  EXPECT_EQ(station.offsetMode, 0);
}

// A command chosen during another's wait is ignored when it would move or expose; the
// laser off, the lamp and saving the picture act, also during a run.
TEST_F(WritingRun, NothingThatMovesOrExposesStartsInsideAnother) {
  openWithSpeeds(100, 100, 100);
  recordedSetBoxText(Box::PositionX, "250");  // 2.5 s at 100 um/s
  recordedSetBoxText(Box::Blink, "500");
  const std::function<void()> operations[] = {
      [] { dispatchCommand(IDC_MOVE_X); }, [] { onMainKeyDown(0x26); },  // Up: Y by 500 um
      [] { dispatchCommand(IDC_BLINK); }, [] { dispatchCommand(IDC_CAMERA_CAPTURE); }};
  for (const std::function<void()>& operation : operations) {
    recordedScriptAction(virtualClockNow() + 50, [] {
      for (int id : {IDC_START_WRITING, IDC_MOUNT, IDC_LASER_ON, IDC_LASER_OFF})
        dispatchCommand(id);
      onMainKeyDown(0x25);
    });
    operation();
  }
  EXPECT_THAT(moves(), ElementsAre("m1600", "M800"));
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 0, virtualClockNow()), 250.0, 0.5);
  EXPECT_FALSE(hasLine("button 2202: Stop"));
  const Lines sent = sentCommands();
  EXPECT_LT(indexOf(sent, "D 6 0"), indexOf(sent, "M800")) << "the laser off acts in the X move";

  maskImage.valid = alignmentMarkImage.valid = 0;
  recordedScriptAction(virtualClockNow() + 100, [] {
    for (int id : {IDM_SAVE_IMAGE, IDC_ILLUMINATION_ON, IDC_BLINK, IDC_GO_TO_WRITING,
                   IDM_WRITING_CONFIGURATION})
      dispatchCommand(id);
  });
  virtualSerialClearWritten();
  dispatchCommand(IDC_START_WRITING);
  const auto files = std::filesystem::directory_iterator(dataPaths.runFolder);
  EXPECT_EQ(std::count_if(begin(files), end(files),
                          [](const auto& f) { return f.path().filename().string()[0] == 'o'; }),
            2)
      << "the run's picture and the one saved during it";
  EXPECT_TRUE(hasLine("D 7 5", sentCommands()));
  EXPECT_FALSE(hasLine("D 6 5", sentCommands()));
  EXPECT_FALSE(hasLine("button 2205: Cancel writing"));
  EXPECT_TRUE(recordedDialogCalls().empty());
}

TEST_F(WritingRun, ARightClickWithTheLaserOnSetsTheSpotAndTheWheelZoomsOneStep) {
  laser.laserOn = 1;
  recordedQueueAnswer(Answer::Yes);
  onDisplayRightButtonDown(0, 1027);  // counted up from the bottom
  EXPECT_EQ(recordedCalls().back(),
            "question Position: (0,1): Do you want to set the laser beam spot here?");
  EXPECT_EQ(laser.laserShiftY, 1);
  EXPECT_TRUE(hasLine("ellipse -2,1025,2,1029 pen ff0000", recordedDisplayCalls()));
  recordedQueueAnswer(Answer::No);
  onDisplayRightButtonDown(600, 28);
  EXPECT_EQ(laser.laserShiftY, 1);
  station.zoom = 1.0;
  onDisplayWheel(-120);
  EXPECT_DOUBLE_EQ(station.zoom, 0.75);
  onDisplayWheel(120);
  EXPECT_DOUBLE_EQ(station.zoom, 1.0);
}

}  // namespace
