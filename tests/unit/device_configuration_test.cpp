// The Device Configuration dialog, opened from the menu on the recorded dialog, the virtual
// board and the virtual camera.
#include "app/device_configuration.h"

#include "app/command_dispatch.h"
#include "camera_test_support.h"
#include "link_fixture.h"
#include "resources/resource.h"

using ::testing::ElementsAre;

class DeviceConfiguration : public LinkTest {
 protected:
  // Opens the dialog from the menu and plays what was scripted; "Close" ends it.
  static void runDialog() {
    recordedDialogPress(IDC_DCFG_CLOSE);
    dispatchCommand(IDM_DEVICE_CONFIGURATION);
  }
};

// The port box is clamped to 1 ... 30 and the port reopened when the box holds text; the
// Standa lists go to their fields and reopen the port.
TEST_F(DeviceConfiguration, ThePortAndTheStandaMotors) {
  const std::tuple<const char*, int, bool> rows[] = {
      {"0", 1, true}, {"45", 30, true}, {"com", 30, true}, {"", 30, false}};
  for (const auto& [typed, port, reopened] : rows) {
    virtualSerialClearWritten();
    recordedDialogType(IDC_DCFG_PORT, typed);
    recordedDialogPress(IDC_DCFG_PORT_INITIALIZE);
    runDialog();
    EXPECT_EQ(serialLink.comPort, port) << typed;
    EXPECT_EQ(hasLine("z", sentCommands()), reopened) << typed;
  }
  EXPECT_TRUE(recordedDialogChecked(IDC_DCFG_PORT_CONNECTED));
  recordedDialogChoose(IDC_DCFG_STANDA_MOTOR2, 0);
  recordedDialogPress(IDC_DCFG_STANDA_INITIALIZE);
  runDialog();
  EXPECT_TRUE(hasLine("message Scanner: Standa scanner Initialized"));
  EXPECT_EQ(station.standaMotor2Axis, 0);
  virtualSerialSetPresent(false);
  recordedDialogToggle(IDC_DCFG_PORT_CONNECTED);
  recordedDialogPress(IDC_DCFG_STANDA_CONNECTED);
  runDialog();
  EXPECT_FALSE(recordedDialogChecked(IDC_DCFG_PORT_CONNECTED));
  EXPECT_TRUE(hasLine("message Scanner Error: No devices found"));
}

// "UP" and "DOWN" move axis 0 though the answer reads "Z="; a click while one moves is
// ignored. After a zero point the next X move is refused by the limit flags, as designed.
TEST_F(DeviceConfiguration, ZeroPointUpDownAndMoveTo) {
  openWithSpeeds(1000, 1000, 5000);
  recordedScriptAction(virtualClockNow() + 20, [] { deviceConfigurationCommand(IDC_DCFG_UP); });
  recordedDialogPress(IDC_DCFG_DOWN);
  recordedDialogType(IDC_DCFG_MOVE_TO_BOX, "-2000000000");  // to the end of the travel
  recordedDialogPress(IDC_DCFG_MOVE_TO);
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_DCFG_ANSWER), "Z=-100.0");
  EXPECT_THAT(sentWithoutQueries(), ElementsAre("m-640", "L-40000", "D 6 0", "G 5 0"));
  virtualSerialClearWritten();
  recordedDialogPress(IDC_DCFG_ZERO_POINT);
  recordedDialogPress(IDC_DCFG_UP);
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_DCFG_ANSWER), "Z=0.0");
  EXPECT_THAT(sentWithoutQueries(), ElementsAre("z", "Z", "D 6 0", "G 5 0"))
      << "the move after the zero point is refused; Close always darkens the board";
}

// "Set" sends the command box as "Send" does; a failed send is reported. The camera's
// "Initialize" reconnects it and sets it automatic, then manual.
TEST_F(DeviceConfiguration, SendSetRecieveAndTheCamera) {
  openWithSpeeds(1000, 1000, 1000);
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
  runDialog();
  EXPECT_THAT(sentCommands(), ElementsAre("G 5 100", "P"));
  EXPECT_THAT(linesAfter("text 1002: ", recordedDialogCalls()),
              ElementsAre("Z=12.5", "Z=12.5", "P0\r\n", "Z=12.5"));
  EXPECT_TRUE(hasLine("message Arduino Error: Fail to send command"));
  EXPECT_TRUE(recordedDialogChecked(IDC_DCFG_CAMERA_CONNECTED));
  const auto& log = virtualCameraLog();
  auto automatic = std::find(log.begin(), log.end(), "set GainAuto Continuous");
  EXPECT_NE(std::find(automatic, log.end(), "set GainAuto Off"), log.end());
}
