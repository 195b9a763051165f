// The Writing Configuration dialog as the operator meets it, opened from the menu on the
// recorded dialog and the virtual board.
#include "app/command_dispatch.h"
#include "camera/live_view_control.h"
#include "link_fixture.h"
#include "resources/resource.h"
#include "sim/recorded_dialog.h"

namespace {

class WritingConfiguration : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    recordedDialogReset();
    setLiveView(0);
  }
  // Opens the dialog from the menu and plays what was scripted, then "Done".
  static void runDialog() {
    recordedDialogPress(IDC_WCFG_DONE);
    dispatchCommand(IDM_WRITING_CONFIGURATION);
  }
};

TEST_F(WritingConfiguration, OpensOnTheHeldValues) {
  serialLink.positionUm[0] = 1234.56;
  station.magnification = 3;
  linePattern.active = 0;
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_X), "1234.6");
  EXPECT_EQ(recordedDialogText(IDC_WCFG_STEP), "100");
  EXPECT_EQ(recordedDialogSelection(IDC_WCFG_WRITING_AREA), 2);
  EXPECT_FALSE(recordedDialogChecked(IDC_WCFG_LINE_DRAWING));
}

TEST_F(WritingConfiguration, SevenMillimetresThenSetZoomsToOneSeventhWithLiveViewPaused) {
  setLiveView(1);
  recordedFeedbackReset();
  recordedDialogChoose(IDC_WCFG_WRITING_AREA, 6);
  recordedDialogPress(IDC_WCFG_SET);
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_WCFG_MAGNIFICATION), "7");
  EXPECT_EQ(recordedBoxText(Box::WritingArea), "7");
  EXPECT_DOUBLE_EQ(station.zoom, 1.0 / 7.0);
  EXPECT_EQ(recordedCalls().front(), "timer 1: killed");
  EXPECT_EQ(setLiveView(4), 1) << "the live view comes back after the dialog";
}

// Each box is clamped into its field and written back; text that does not parse keeps
// the old value and shows it. Voltages are read in single precision: 2.345 shows 2.35.
TEST_F(WritingConfiguration, SetClampsEveryBoxAndWritesItBack) {
  struct Row {
    int id;
    const char* typed;
    const char* shown;
    double stored;
    const double* field;
    const int* intField;
  };
  const Row rows[] = {
      {IDC_WCFG_OUTSIDE_SUBFACTOR, "1", "2", 2, nullptr, &cellGrid.cellSize},
      {IDC_WCFG_LASER_SHIFT_X, "-30000", "-25000", -25000, nullptr, &laser.laserShiftX},
      {IDC_WCFG_LASER_SHIFT_Y, "25001", "25000", 25000, nullptr, &laser.laserShiftY},
      {IDC_WCFG_LASER_SHIFT_Z, "x12", "0", 0, nullptr, &laser.laserShiftZ},
      {IDC_WCFG_INSIDE_VOLTAGE, "6", "5.00", 5.0, &station.insideVoltage, nullptr},
      {IDC_WCFG_OUTSIDE_VOLTAGE, "2.345", "2.35", 2.345f, &station.outsideVoltage, nullptr},
      {IDC_WCFG_LINE_VOLTAGE, "nan", "1.30", 1.3, &station.lineVoltage, nullptr},
      {IDC_WCFG_INSIDE_SPEED, "20", "30", 30, nullptr, &station.insideSpeed},
      {IDC_WCFG_OUTSIDE_SPEED, "50", "100", 100, nullptr, &station.outsideSpeed},
      {IDC_WCFG_LINE1_SPEED, "500", "300", 300, nullptr, &station.line1Speed},
      {IDC_WCFG_LINE3_SPEED, "5", "10", 10, nullptr, &station.line3Speed},
      {IDC_WCFG_LINE6_SPEED, "", "60", 60, nullptr, &station.line6Speed},
      {IDC_WCFG_LINE10_SPEED, "500", "300", 300, nullptr, &station.line10Speed},
      {IDC_WCFG_DEFOCUS, "-31.5", "-30.0", -30.0, &station.defocusUm, nullptr},
  };
  for (const Row& row : rows) recordedDialogType(row.id, row.typed);
  recordedDialogPress(IDC_WCFG_SET);
  runDialog();
  for (const Row& row : rows) {
    EXPECT_EQ(recordedDialogText(row.id), row.shown) << row.id << " " << row.typed;
    EXPECT_EQ(row.field ? *row.field : *row.intField, row.stored) << row.id << " " << row.typed;
  }
}

TEST_F(WritingConfiguration, ApplyKeepsTheSinglePrecisionVoltageShowsOneDecimalAndLasesAtIt) {
  openWithSpeeds(1000, 1000, 1000);
  recordedDialogType(IDC_WCFG_INSIDE_VOLTAGE, "2.345");
  recordedDialogPress(IDC_WCFG_APPLY);
  runDialog();
  EXPECT_EQ(station.insideVoltage, static_cast<double>(2.345f));
  EXPECT_EQ(recordedDialogText(IDC_WCFG_INSIDE_VOLTAGE), "2.3");
  EXPECT_EQ(sentCommands(), (std::vector<std::string>{"D 6 5", "G 5 119"}));
}

TEST_F(WritingConfiguration, CheckBoxesSetLineDrawingAndSwitchTheLaser) {
  openWithSpeeds(1000, 1000, 1000);
  recordedDialogToggle(IDC_WCFG_LINE_DRAWING);  // it opened checked: now off
  recordedDialogToggle(IDC_WCFG_SHUTTER);
  recordedDialogToggle(IDC_WCFG_SHUTTER);
  runDialog();
  EXPECT_EQ(linePattern.active, 0);
  EXPECT_EQ(sentCommands(), (std::vector<std::string>{"D 6 5", "G 5 117", "D 6 0", "G 5 0"}));
}

TEST_F(WritingConfiguration, StepButtonsAndGoMoveTheStageAndShowWhereItIs) {
  openWithSpeeds(5000, 5000, 5000);
  recordedDialogType(IDC_WCFG_STEP, "250");
  recordedDialogPress(IDC_WCFG_STEP_PLUS_X);
  recordedDialogPress(IDC_WCFG_STEP_MINUS_Y);
  recordedDialogType(IDC_WCFG_STEP, "nan");
  recordedDialogPress(IDC_WCFG_STEP_MINUS_X);  // no step to take
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_X), "250.0");
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_Y), "-250.0");
  EXPECT_FALSE(hasLine("m-", sentCommands())) << "no X move for the step that is no number";

  recordedDialogReset();
  recordedDialogType(IDC_WCFG_POSITION_X, "30000");  // beyond the travel: to its end
  recordedDialogType(IDC_WCFG_POSITION_Y, "-40.5");
  recordedDialogPress(IDC_WCFG_GO);
  runDialog();
  EXPECT_EQ(serialLink.positionUm[0], 25000.0);
  EXPECT_EQ(serialLink.positionUm[1], -40.5);
}

TEST_F(WritingConfiguration, NeitherDialogOpensWhileAnOperationRuns) {
  writingActive = 1;
  recordedDialogPress(IDC_WCFG_DONE);
  dispatchCommand(IDM_WRITING_CONFIGURATION);
  dispatchCommand(IDM_DEVICE_CONFIGURATION);
  EXPECT_TRUE(recordedDialogCalls().empty());
}

}  // namespace
