// The Writing Configuration and Device Configuration dialogs, opened from the menu on the
// recorded dialog, the virtual board and the virtual camera.
#include "app/command_dispatch.h"
#include "app/device_configuration.h"
#include "app/writing_configuration.h"
#include "camera/live_view_control.h"
#include "camera_test_support.h"
#include "link_fixture.h"
#include "resources/resource.h"

using ::testing::ElementsAre;

class ConfigurationDialogs : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    openWithSpeeds(1000, 1000, 1000);
  }
  // Open the dialog from the menu and play what was scripted, then "Done" or "Close".
  static void runWritingConfiguration() {
    recordedDialogPress(IDC_WCFG_DONE);
    dispatchCommand(IDM_WRITING_CONFIGURATION);
  }
  static void runDeviceConfiguration() {
    recordedDialogPress(IDC_DCFG_CLOSE);
    dispatchCommand(IDM_DEVICE_CONFIGURATION);
  }
};

// The live view pauses while the dialog is open. "7mm" sets the magnification, "Set" the
// zoom to match; each box is clamped into its field and written back from it, and text
// that does not parse keeps the old value. Voltages are read in single precision.
TEST_F(ConfigurationDialogs, WritingSevenMillimetresAndSetClampsEveryBoxAndWritesItBack) {
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
  runWritingConfiguration();
  EXPECT_EQ(recordedBoxText(Box::WritingArea), "7");
  EXPECT_DOUBLE_EQ(station.zoom, 1.0 / 7.0);
  for (const auto& [id, typed, shown] : rows) EXPECT_EQ(recordedDialogText(id), shown) << typed;
  EXPECT_EQ(station.outsideVoltage, static_cast<double>(2.345f));
  EXPECT_EQ(cellGrid.cellSize + laser.laserShiftX + station.line10Speed, 2 - 25000 + 300);
  EXPECT_TRUE(hasLine("timer 1: killed"));
  EXPECT_EQ(setLiveView(4), 1) << "the live view comes back after the dialog";
}

// "Shutter open" switches the laser, "Line Drawing mode" the line editing.
TEST_F(ConfigurationDialogs, WritingTheCheckBoxesSwitchTheLaserAndLineDrawing) {
  recordedDialogToggle(IDC_WCFG_LINE_DRAWING);  // it opened checked: now off
  recordedDialogToggle(IDC_WCFG_SHUTTER);
  recordedDialogToggle(IDC_WCFG_SHUTTER);
  runWritingConfiguration();
  EXPECT_EQ(linePattern.active, 0);
  EXPECT_EQ(sentCommands(), (std::vector<std::string>{"D 6 5", "G 5 117", "D 6 0", "G 5 0"}));
}

// A second click while a step moves is ignored, as in the main window.
TEST_F(ConfigurationDialogs, WritingStepButtonsAndGoMoveTheStageOneMoveAtATime) {
  recordedDialogType(IDC_WCFG_STEP, "250");
  recordedScriptAction(virtualClockNow() + 100,
                       [] { writingConfigurationCommand(IDC_WCFG_STEP_PLUS_X); });
  recordedDialogPress(IDC_WCFG_STEP_PLUS_X);
  recordedDialogPress(IDC_WCFG_STEP_MINUS_Y);
  recordedDialogType(IDC_WCFG_STEP, "nan");
  recordedDialogPress(IDC_WCFG_STEP_MINUS_X);  // no step to take
  runWritingConfiguration();
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_X), "250.0");
  EXPECT_EQ(recordedDialogText(IDC_WCFG_POSITION_Y), "-250.0");
  EXPECT_NEAR(boardAxisUm(virtualSerialBoard(), 0, virtualClockNow()), 250.0, 0.5);
  recordedDialogType(IDC_WCFG_POSITION_X, "30000");  // beyond the travel: to its end
  recordedDialogType(IDC_WCFG_POSITION_Y, "-40.5");
  recordedDialogPress(IDC_WCFG_GO);
  runWritingConfiguration();
  EXPECT_EQ(serialLink.positionUm[0], 25000.0);
  EXPECT_EQ(serialLink.positionUm[1], -40.5);
}

// The port box is clamped to 1 ... 30 and the port reopened when the box holds text; the
// Standa "Connected" reopens it too, here in vain.
TEST_F(ConfigurationDialogs, DeviceThePortAndTheStandaMotors) {
  const std::tuple<const char*, int, bool> rows[] = {
      {"0", 1, true}, {"45", 30, true}, {"com", 30, true}, {"", 30, false}};
  for (const auto& [typed, port, reopened] : rows) {
    virtualSerialClearWritten();
    recordedDialogType(IDC_DCFG_PORT, typed);
    recordedDialogPress(IDC_DCFG_PORT_INITIALIZE);
    runDeviceConfiguration();
    EXPECT_EQ(serialLink.comPort, port) << typed;
    EXPECT_EQ(hasLine("z", sentCommands()), reopened) << typed;
  }
  virtualSerialSetPresent(false);
  recordedDialogToggle(IDC_DCFG_PORT_CONNECTED);
  recordedDialogPress(IDC_DCFG_STANDA_CONNECTED);
  runDeviceConfiguration();
  EXPECT_FALSE(recordedDialogChecked(IDC_DCFG_PORT_CONNECTED));
  EXPECT_TRUE(hasLine("message Scanner Error: No devices found"));
}

// "UP" and "DOWN" move axis 0 though the answer reads "Z="; a click while one moves is
// ignored. After a zero point the next X move is refused by the limit flags, as designed.
TEST_F(ConfigurationDialogs, DeviceZeroPointUpDownAndMoveTo) {
  openWithSpeeds(1000, 1000, 5000);
  recordedScriptAction(virtualClockNow() + 20, [] { deviceConfigurationCommand(IDC_DCFG_UP); });
  recordedDialogPress(IDC_DCFG_DOWN);
  recordedDialogType(IDC_DCFG_MOVE_TO_BOX, "-2000000000");  // to the end of the travel
  recordedDialogPress(IDC_DCFG_MOVE_TO);
  runDeviceConfiguration();
  EXPECT_EQ(recordedDialogText(IDC_DCFG_ANSWER), "Z=-100.0");
  EXPECT_THAT(sentWithoutQueries(), ElementsAre("m-640", "L-40000", "D 6 0", "G 5 0"));
  virtualSerialClearWritten();
  recordedDialogPress(IDC_DCFG_ZERO_POINT);
  recordedDialogPress(IDC_DCFG_UP);
  runDeviceConfiguration();
  EXPECT_EQ(recordedDialogText(IDC_DCFG_ANSWER), "Z=0.0");
  EXPECT_THAT(sentWithoutQueries(), ElementsAre("z", "Z", "D 6 0", "G 5 0"))
      << "the move after the zero point is refused; Close always darkens the board";
}

// "Set" sends the command box as "Send" does; a failed send is reported. The camera's
// "Initialize" reconnects it and sets it automatic, then manual.
TEST_F(ConfigurationDialogs, DeviceSendSetRecieveAndTheCamera) {
  virtualCameraReset();
  serialLink.positionUm[0] = 12.5;
  recordedDialogType(IDC_DCFG_COMMAND, "G 5 100");
  recordedDialogPress(IDC_DCFG_SET);
  recordedDialogType(IDC_DCFG_COMMAND, "P");
  recordedDialogPress(IDC_DCFG_SEND);
  recordedDialogPress(IDC_DCFG_RECEIVE);
  recordedDialogPress(IDC_DCFG_CAMERA_INITIALIZE);
  recordedDialogPress(IDC_DCFG_CLOSE_PORT);
  recordedDialogPress(IDC_DCFG_SEND);
  runDeviceConfiguration();
  EXPECT_THAT(sentCommands(), ElementsAre("G 5 100", "P"));
  EXPECT_THAT(linesAfter("text 1002: ", recordedDialogCalls()),
              ElementsAre("Z=12.5", "Z=12.5", "P0\r\n", "Z=12.5"));
  EXPECT_TRUE(hasLine("message Arduino Error: Fail to send command"));
  EXPECT_TRUE(recordedDialogChecked(IDC_DCFG_CAMERA_CONNECTED));
  const auto& log = virtualCameraLog();
  auto automatic = std::find(log.begin(), log.end(), "set GainAuto Continuous");
  EXPECT_NE(std::find(automatic, log.end(), "set GainAuto Off"), log.end());
}
