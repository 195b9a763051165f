// The writing run, the writing place, what may start while something runs, and the
// display's mouse, on the virtual board.
#include <algorithm>

#include "app/command_dispatch.h"
#include "app/display_pointer.h"
#include "link/controller_commands.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

class WritingRun : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    openWithSpeeds(2000, 2000, 500);
  }
  static Lines moves() {  // of the three axes, since the last clear
    Lines sent = sentCommands();
    std::erase_if(sent, [](const std::string& c) { return c.find_first_of("mML") != 0; });
    return sent;
  }
  static size_t indexOf(const Lines& lines, const std::string& line) {
    return static_cast<size_t>(std::find(lines.begin(), lines.end(), line) - lines.begin());
  }
};

// A run darkens the station, approaches the laser's place (Z to the focus plus the laser's
// Z, down-up twice), writes and goes back. It counts as writing from its first step: the
// live view stays frozen and a click asks; "Yes" in the approach skips the writing, not the
// return. In a line the question darkens the laser: "No" brings the voltage back and the
// line goes on; "Yes" lets the stroke under way finish dark before the stage goes back.
TEST_F(WritingRun, TheRunFromItsApproachToItsReturnAndItsStops) {
  maskImage.valid = alignmentMarkImage.valid = 0;
  laser.laserShiftX = 1000;  // 1.7 s of approach at 600 um/s
  laser.laserShiftY = 50;
  laser.laserShiftZ = 10;
  station.line1Speed = 50;
  linePattern.segments = {{0, 0, 400, 0, 1}};  // 8 s along X from 1000 um
  VirtualBoard& board = virtualSerialBoard();
  int timerTicks = 0, timerDrawings = 0;
  const auto timerTick = [&] {
    const size_t drawn = recordedDisplayCalls().size();
    onMainTimer(1);
    timerDrawings += static_cast<int>(recordedDisplayCalls().size() - drawn);
    ++timerTicks;
  };
  for (auto [clickAfterMs, answer] :
       {std::pair{500, Answer::Yes}, {5800, Answer::No}, {5800, Answer::Yes}}) {
    board.exposure.clear();
    virtualSerialClearWritten();
    recordedFeedbackReset();
    recordedScriptAction(virtualClockNow() + 200, timerTick);
    double clickedAtUm = 0;
    recordedScriptAction(virtualClockNow() + clickAfterMs,
                         [&] { clickedAtUm = boardAxisUm(board, 0, virtualClockNow()); });
    recordedScriptClick(virtualClockNow() + clickAfterMs, QueuedTarget::DisplayWindow);
    recordedQueueAnswer(answer);
    dispatchCommand(IDC_START_WRITING);
    EXPECT_TRUE(hasLine("question Warning: Do you want to stop writing, now ?"));
    const Lines sent = sentCommands(), &calls = recordedCalls();
    Lines voltages = sent;
    std::erase_if(voltages, [](const std::string& c) { return c.rfind("G 5 ", 0) != 0; });
    const double litUntilUm = board.exposure.empty() ? 0.0 : board.exposure.back().x1Um;
    if (clickAfterMs == 500) {
      EXPECT_THAT(moves(),
                  ElementsAre("m6400", "M80", "L16", "L12", "L16", "L12", "L16", "L0", "m0", "M0"));
      EXPECT_LT(std::max(indexOf(sent, "D 7 0"), indexOf(sent, "D 6 0")), indexOf(sent, "m6400"));
      EXPECT_LT(indexOf(calls, "button 2202: Stop"), indexOf(calls, "button 2202: Start Writing"));
      EXPECT_EQ(litUntilUm, 0.0);
    } else if (answer == Answer::No) {
      EXPECT_THAT(voltages, ElementsAre("G 5 66", "G 5 0", "G 5 66", "G 5 0"));
      EXPECT_NEAR(litUntilUm, 1400.0, 2.0);
    } else {
      EXPECT_THAT(voltages, ElementsAre("G 5 66", "G 5 0"));
      EXPECT_NEAR(litUntilUm, clickedAtUm, 1.0) << "dark from the click on";
      EXPECT_NEAR(board.axes[0].fromSteps / 6.4, 1400.0, 2.0) << "the return starts at the end";
    }
  }
  EXPECT_EQ(timerTicks, 3);
  EXPECT_EQ(timerDrawings, 0);
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

// Dx and Dy (to +-300 um) move by themselves, or to the writing place (the laser's place
// plus them), which "Go to Writing" reaches lifted and leaves, as does a run from there.
TEST_F(WritingRun, GoToWritingAndTheOffsets) {
  laser.laserShiftX = 100;
  station.zLiftUm = 10;
  maskImage.valid = alignmentMarkImage.valid = linesEnabled = 0;
  recordedSetBoxText(Box::Dx, "1000");
  dispatchCommand(IDC_APPLY_DX);
  dispatchCommand(IDC_GO_TO_WRITING);
  // Z lifted from the focus height, the X reading of 300 um.
  EXPECT_THAT(moves(), ElementsAre("m1920", "m2560", "M0", "L496", "L492", "L496", "L492", "L496"));
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

// A command chosen in another's wait is ignored when it would move or expose; the laser
// off, the lamp and saving act, also in a run. A stop left by a click does not end a run.
TEST_F(WritingRun, NothingThatMovesOrExposesStartsInsideAnother) {
  openWithSpeeds(100, 100, 100);
  recordedSetBoxText(Box::PositionX, "250");  // 2.5 s at 100 um/s
  recordedSetBoxText(Box::Blink, "500");
  for (int id : {IDC_MOVE_X, IDC_BLINK}) {
    recordedScriptAction(virtualClockNow() + 50, [] {
      for (int id : {IDC_START_WRITING, IDC_MOUNT, IDC_LASER_ON, IDC_LASER_OFF})
        dispatchCommand(id);
      onMainKeyDown(0x25);
    });
    dispatchCommand(id);
  }
  EXPECT_THAT(moves(), ElementsAre("m1600"));
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 0, virtualClockNow()), 250.0, 0.5);
  EXPECT_FALSE(hasLine("button 2202: Stop"));
  const Lines sent = sentCommands();
  EXPECT_LT(indexOf(sent, "D 6 0"), indexOf(sent, "D 6 5")) << "the laser off acts in the X move";

  recordedScriptClick(virtualClockNow() + 100, QueuedTarget::DisplayWindow);
  onMainKeyDown(0x26);
  EXPECT_TRUE(hasLine("O", sentCommands())) << "the motors' stop letters";

  maskImage.valid = alignmentMarkImage.valid = 0;
  linePattern.segments = {{0, 0, 10, 0, 1}};
  recordedScriptAction(virtualClockNow() + 100, [] {
    for (int id : {IDM_SAVE_IMAGE, IDC_ILLUMINATION_ON, IDC_BLINK, IDC_GO_TO_WRITING,
                   IDM_WRITING_CONFIGURATION})
      dispatchCommand(id);
  });
  virtualSerialClearWritten();
  dispatchCommand(IDC_START_WRITING);
  EXPECT_FALSE(virtualSerialBoard().exposure.empty()) << "the click's stop is not this run's";
  EXPECT_EQ(linesAfter("save optic", recordedDisplayCalls()).size(), 2u);
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
}
