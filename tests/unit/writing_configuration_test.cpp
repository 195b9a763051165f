// The Writing Configuration dialog, opened from the menu on the recorded dialog and the
// virtual board.
#include "app/writing_configuration.h"

#include "app/command_dispatch.h"
#include "app/live_view_control.h"
#include "link_fixture.h"
#include "resources/resource.h"

class WritingConfiguration : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    openWithSpeeds(1000, 1000, 1000);
  }
  // Opens the dialog from the menu and plays what was scripted, then "Done".
  static void runDialog() {
    recordedDialogPress(IDC_WCFG_DONE);
    dispatchCommand(IDM_WRITING_CONFIGURATION);
  }
};

// The live view pauses while the dialog is open. "7mm" sets the magnification, "Set" the
// zoom to match; each box is clamped into its field and written back from it, and text
// that does not parse keeps the old value. Voltages are read in single precision.
TEST_F(WritingConfiguration, SevenMillimetresAndSetClampsEveryBoxAndWritesItBack) {
  setLiveView(1);
  const std::tuple<int, const char*, const char*> rows[] = {
      {IDC_WCFG_OUTSIDE_SUBFACTOR, "1", "2"},     {IDC_WCFG_LASER_SHIFT_X, "-30000", "-25000"},
      {IDC_WCFG_LASER_SHIFT_Y, "25001", "25000"}, {IDC_WCFG_LASER_SHIFT_Z, "x12", "0"},
      {IDC_WCFG_INSIDE_VOLTAGE, "6", "5.00"},     {IDC_WCFG_OUTSIDE_VOLTAGE, "2.345", "2.35"},
      {IDC_WCFG_LINE_VOLTAGE, "nan", "1.30"},     {IDC_WCFG_INSIDE_SPEED, "20", "30"},
      {IDC_WCFG_OUTSIDE_SPEED, "50", "100"},      {IDC_WCFG_LINE1_SPEED, "500", "300"},
      {IDC_WCFG_LINE3_SPEED, "5", "10"},          {IDC_WCFG_LINE6_SPEED, "", "60"},
      {IDC_WCFG_LINE10_SPEED, "500", "300"},      {IDC_WCFG_DEFOCUS, "-31.5", "-30.0"}};
  recordedDialogChoose(IDC_WCFG_WRITING_AREA, 6);
  for (const auto& [id, typed, shown] : rows) recordedDialogType(id, typed);
  recordedDialogPress(IDC_WCFG_SET);
  recordedFeedbackReset();
  runDialog();
  EXPECT_EQ(recordedBoxText(Box::WritingArea), "7");
  EXPECT_DOUBLE_EQ(station.zoom, 1.0 / 7.0);
  for (const auto& [id, typed, shown] : rows) EXPECT_EQ(recordedDialogText(id), shown) << typed;
  EXPECT_EQ(station.outsideVoltage, static_cast<double>(2.345f));
  EXPECT_EQ(cellGrid.cellSize + laser.laserShiftX + station.line10Speed, 2 - 25000 + 300);
  EXPECT_EQ(recordedCalls().front(), "timer 1: killed");
  EXPECT_EQ(setLiveView(4), 1) << "the live view comes back after the dialog";
}

// "Apply" shows one decimal where "Set" shows two, and lases at the new voltage; "Shutter
// open" switches the laser, "Line Drawing mode" the line editing.
TEST_F(WritingConfiguration, ApplyAndTheCheckBoxesSwitchTheLaserAndLineDrawing) {
  recordedDialogType(IDC_WCFG_INSIDE_VOLTAGE, "2.345");
  recordedDialogPress(IDC_WCFG_APPLY);
  recordedDialogToggle(IDC_WCFG_LINE_DRAWING);  // it opened checked: now off
  recordedDialogToggle(IDC_WCFG_SHUTTER);
  recordedDialogToggle(IDC_WCFG_SHUTTER);
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_WCFG_INSIDE_VOLTAGE), "2.3");
  EXPECT_EQ(linePattern.active, 0);
  EXPECT_EQ(sentCommands(),
            (std::vector<std::string>{"D 6 5", "G 5 119", "D 6 5", "D 6 0", "G 5 0"}));
}

// A second click while a step moves is ignored, as in the main window.
TEST_F(WritingConfiguration, StepButtonsAndGoMoveTheStageOneMoveAtATime) {
  recordedDialogType(IDC_WCFG_STEP, "250");
  recordedScriptAction(virtualClockNow() + 100,
                       [] { writingConfigurationCommand(IDC_WCFG_STEP_PLUS_X); });
  recordedDialogPress(IDC_WCFG_STEP_PLUS_X);
  recordedDialogPress(IDC_WCFG_STEP_MINUS_Y);
  recordedDialogType(IDC_WCFG_STEP, "nan");
  recordedDialogPress(IDC_WCFG_STEP_MINUS_X);  // no step to take
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_X), "250.0");
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_Y), "-250.0");
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 0, virtualClockNow()), 250.0, 0.5);
  recordedDialogType(IDC_WCFG_POSITION_X, "30000");  // beyond the travel: to its end
  recordedDialogType(IDC_WCFG_POSITION_Y, "-40.5");
  recordedDialogPress(IDC_WCFG_GO);
  runDialog();
  EXPECT_EQ(serialLink.positionUm[0], 25000.0);
  EXPECT_EQ(serialLink.positionUm[1], -40.5);
}
