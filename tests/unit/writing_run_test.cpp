// The frame of a writing run, the trip to the writing place, Dx/Dy and the display's mouse.
#include <algorithm>

#include "app/command_dispatch.h"
#include "app/display_pointer.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "resources/resource.h"
#include "sim/recorded_display.h"

namespace {

using ::testing::ElementsAre;

class WritingRun : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    recordedDisplayReset();
  }

  // The stage commands (moves of the three axes) among those sent since the last clear.
  static std::vector<std::string> moves() {
    std::vector<std::string> all = sentCommands(), result;
    std::copy_if(all.begin(), all.end(), std::back_inserter(result), [](const std::string& c) {
      return !c.empty() && (c[0] == 'm' || c[0] == 'M' || c[0] == 'L');
    });
    return result;
  }

  static size_t indexOf(const std::vector<std::string>& lines, const std::string& line) {
    return static_cast<size_t>(std::find(lines.begin(), lines.end(), line) - lines.begin());
  }
};

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

  dispatchCommand(IDC_START_WRITING);

  // To the writing place, Z to the focus plus the laser's Z, down-up twice, and back.
  EXPECT_THAT(moves(),
              ElementsAre("m640", "M1680", "L16", "L12", "L16", "L12", "L16", "L0", "m0", "M1600"));
  const std::vector<std::string> sent = sentCommands();
  EXPECT_LT(indexOf(sent, "D 7 0"), indexOf(sent, "m640")) << "lamp off before moving";
  EXPECT_LT(indexOf(sent, "D 6 0"), indexOf(sent, "m640")) << "laser off before moving";
  EXPECT_EQ(boardPin(virtualSerialBoard(), kBoardLaserPin), 0);
  const std::vector<std::string>& calls = recordedCalls();
  const size_t stopText = indexOf(calls, "button 2202: Stop");
  ASSERT_LT(stopText, calls.size());
  EXPECT_LT(stopText, indexOf(calls, "box Progress: All Writings finished"));
  EXPECT_LT(indexOf(calls, "box Progress: All Writings finished"),
            indexOf(calls, "button 2202: Start Writing"));
  EXPECT_TRUE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(0).txt"));
  EXPECT_EQ(writingActive, 0);
  EXPECT_EQ(station.moveBusy, 0);
}

TEST_F(WritingRun, AStopDuringTheApproachSkipsTheWritingButNotTheReturn) {
  openWithSpeeds(2000, 2000, 500);
  laser.laserShiftX = 1000;
  recordedScriptClick(virtualClockNow() + 100, QueuedTarget::DisplayWindow);
  recordedQueueAnswer(Answer::Yes);
  virtualSerialClearWritten();

  dispatchCommand(IDC_START_WRITING);

  EXPECT_EQ(station.stopRequested, 1);
  // The approach ends with its backlash steps; then the stage goes straight back.
  EXPECT_THAT(moves(), ElementsAre("m6400", "M0", "L-3", "L0", "L-3", "L0", "m0", "M0"));
  EXPECT_EQ(writingActive, 0);
}

TEST_F(WritingRun, GoToWritingGoesToTheOffsetPlaceLiftedAndBackOnTheSecondPress) {
  openWithSpeeds(2000, 2000, 500);
  laser.laserShiftX = 100;
  station.offsetX = 20;
  station.zLiftUm = 10;
  virtualSerialClearWritten();

  dispatchCommand(IDC_GO_TO_WRITING);
  EXPECT_THAT(moves(), ElementsAre("m768", "M0", "L16", "L12", "L16", "L12", "L16"));
  EXPECT_TRUE(hasLine("button 2205: Cancel writing"));

  virtualSerialClearWritten();
  dispatchCommand(IDC_GO_TO_WRITING);
  EXPECT_THAT(moves(), ElementsAre("m0", "M0", "L0"));
  EXPECT_EQ(station.offsetMode, 0);
}

TEST_F(WritingRun, DxIsClampedTo300AndMovesXByItOrToTheOffsetPlace) {
  openWithSpeeds(2000, 2000, 500);
  recordedSetBoxText(Box::Dx, "1000");
  dispatchCommand(IDC_APPLY_DX);
  EXPECT_DOUBLE_EQ(station.offsetX, 300.0);
  EXPECT_THAT(moves(), ElementsAre("m1920"));
  // The snapshot after the move: the lamp is lit for the grab only.
  EXPECT_EQ(boardPin(virtualSerialBoard(), kBoardLampPin), 0);

  station.offsetMode = 1;
  laser.laserShiftY = 40;
  virtualSerialClearWritten();
  recordedSetBoxText(Box::Dy, "-12.5");
  dispatchCommand(IDC_APPLY_DY);
  EXPECT_DOUBLE_EQ(station.offsetY, -12.5);
  EXPECT_THAT(moves(), ElementsAre("m1920", "M44"));  // (0 + 300, 40 - 12.5) um, absolute
}

TEST_F(WritingRun, NothingElseStartsWhileARunMoves) {
  openWithSpeeds(2000, 2000, 500);
  station.moveBusy = 1;  // as the run leaves it while its stage moves
  virtualSerialClearWritten();
  const int blocked[] = {IDC_START_WRITING, IDC_GO_TO_WRITING, IDC_MOVE_X,    IDC_LASER_ON,
                         IDC_BLINK,         IDC_ZOOM_IN,       IDC_MASK_LAYER};
  const double zoom = station.zoom;
  for (int id : blocked) dispatchCommand(id);
  onMainKeyDown(0x25);  // Left arrow jog
  onDisplayWheel(120);
  EXPECT_TRUE(sentCommands().empty());
  EXPECT_EQ(laser.laserOn, 0);
  EXPECT_EQ(station.zoom, zoom);
  EXPECT_EQ(maskImage.valid, 1);
  // Switching the laser off always works.
  dispatchCommand(IDC_LASER_OFF);
  EXPECT_THAT(sentCommands(), ElementsAre("D 6 0"));
}

TEST_F(WritingRun, TheFirstXMoveAfterOpeningGoesOut) {
  openWithSpeeds(2000, 2000, 500);
  recordedSetBoxText(Box::PositionX, "250");
  dispatchCommand(IDC_MOVE_X);
  EXPECT_THAT(moves(), ElementsAre("m1600"));
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 0, virtualClockNow()), 250.0, 0.5);
}

TEST_F(WritingRun, AClickOnTheDisplayDuringAMoveStopsTheMotorsAndEndsTheWait) {
  openWithSpeeds(100, 100, 100);
  // A board that says nothing more: only the click can end this wait before its time-out.
  virtualSerialBoard().faults.silent = true;
  const uint64_t startMs = virtualClockNow();
  recordedScriptClick(startMs + 500, QueuedTarget::DisplayWindow);
  MoveAxisAndWait(serialLink, 1, 1000.0);  // ten seconds at 100 um/s
  const std::vector<std::string> sent = sentCommands();
  EXPECT_THAT(std::vector<std::string>(sent.end() - 3, sent.end()), ElementsAre("n", "N", "O"))
      << "the stop letters are the last commands: nothing is sent after them";
  EXPECT_LT(virtualClockNow() - startMs, 1000u);
}

TEST_F(WritingRun, MoveXYWaitsUntilTheStageIsThere) {
  openWithSpeeds(2000, 2000, 500);
  const uint64_t startMs = virtualClockNow();
  MoveXY(0.0, 1000.0, 500);  // two seconds of travel
  EXPECT_GE(virtualClockNow() - startMs, 1900u);
  // The nominal travel time leaves the board's ramps a few micrometres to go.
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 1, virtualClockNow()), 1000.0, 10.0);
}

TEST_F(WritingRun, TheLaserIsDarkWhileTheStopQuestionIsOpenAndRestoredOnNo) {
  openWithSpeeds(2000, 2000, 500);
  SwitchLaser(laser, 1);  // 2.3 V
  writingActive = 1;
  virtualSerialClearWritten();
  recordedScriptClick(virtualClockNow() + 20, QueuedTarget::MainWindow);
  recordedQueueAnswer(Answer::No);
  EXPECT_EQ(waitResponsive(100), 1);
  EXPECT_THAT(sentCommands(), ElementsAre("G 5 0", "G 5 117"));
}

TEST_F(WritingRun, ARightClickWithTheLaserOnSetsTheSpotCountedUpFromTheBottom) {
  laser.laserOn = 1;
  recordedQueueAnswer(Answer::Yes);
  onDisplayRightButtonDown(0, 1027);
  EXPECT_EQ(recordedCalls().back(),
            "question Position: (0,1): Do you want to set the laser beam spot here?");
  EXPECT_EQ(laser.laserShiftY, 1);
  EXPECT_TRUE(hasLine("ellipse -2,1025,2,1029 pen ff0000", recordedDisplayCalls()));

  recordedQueueAnswer(Answer::No);
  onDisplayRightButtonDown(600, 28);
  EXPECT_EQ(laser.laserShiftY, 1);
}

TEST_F(WritingRun, TheWheelZoomsOneStepEachWayAndStopsAtTheClamp) {
  station.zoom = 1.0;
  onDisplayWheel(-120);
  EXPECT_DOUBLE_EQ(station.zoom, 0.75);
  onDisplayWheel(120);
  EXPECT_DOUBLE_EQ(station.zoom, 1.0);
}

}  // namespace
