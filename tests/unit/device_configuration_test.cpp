// The Device Configuration dialog as the operator meets it, opened from the menu on the
// recorded dialog, the virtual board and the virtual camera.
#include "app/command_dispatch.h"
#include "app/startup.h"
#include "camera_test_support.h"
#include "link/controller_commands.h"
#include "link_fixture.h"
#include "resources/resource.h"
#include "sim/recorded_dialog.h"

namespace {

using Commands = std::vector<std::string>;

class DeviceConfiguration : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    recordedDialogReset();
    virtualCameraReset();
    camera.connected = 0;
    camera.camera = nullptr;
  }
  // Opens the dialog from the menu and plays what was scripted; "Close" ends it.
  static void runDialog() {
    recordedDialogPress(IDC_DCFG_CLOSE);
    dispatchCommand(IDM_DEVICE_CONFIGURATION);
  }
  static bool opened() { return hasLine("z", sentCommands()); }
};

TEST_F(DeviceConfiguration, ThePortIsClampedAndReopenedWhenTheBoxHoldsText) {
  struct Row {
    const char* typed;
    int port;
    bool reopened;
  };
  for (const Row& row : {Row{"0", 1, true}, Row{"45", 30, true}, Row{"12", 12, true},
                         Row{"com", 12, true}, Row{"", 12, false}}) {
    recordedDialogReset();
    virtualSerialClearWritten();
    recordedDialogType(IDC_DCFG_PORT, row.typed);
    recordedDialogPress(IDC_DCFG_PORT_INITIALIZE);
    runDialog();
    EXPECT_EQ(serialLink.comPort, row.port) << row.typed;
    EXPECT_EQ(opened(), row.reopened) << row.typed;
  }
  EXPECT_TRUE(recordedDialogChecked(IDC_DCFG_PORT_CONNECTED));

  virtualSerialSetPresent(false);
  recordedDialogReset();
  recordedDialogToggle(IDC_DCFG_PORT_CONNECTED);
  runDialog();
  EXPECT_FALSE(recordedDialogChecked(IDC_DCFG_PORT_CONNECTED));
  EXPECT_TRUE(hasLine("message Warning: Error in  opening serial port"));
}

TEST_F(DeviceConfiguration, NoneForAMotorReachesConfigTxtAtExit) {
  openWithSpeeds(1000, 1000, 1000);
  recordedDialogChoose(IDC_DCFG_STANDA_MOTOR2, 0);
  recordedDialogChoose(IDC_DCFG_STANDA_MOTOR3, 1);
  recordedDialogPress(IDC_DCFG_STANDA_INITIALIZE);
  runDialog();
  EXPECT_EQ(recordedDialogEntries(IDC_DCFG_STANDA_MOTOR1), (Commands{"None", "X", "Y", "Z"}));
  EXPECT_TRUE(hasLine("message Scanner: Standa scanner Initialized"));
  EXPECT_EQ(sentCommands().front(), "z") << "the stage was reopened";

  shutDownDevices();
  EXPECT_NE(readFile(dataPaths.configPath).find("Standa:1,0,1,"), std::string::npos);

  virtualSerialSetPresent(false);
  recordedDialogPress(IDC_DCFG_STANDA_CONNECTED);
  runDialog();
  EXPECT_TRUE(hasLine("message Scanner Error: No devices found"));
}

// After a zero point the next X move is refused by the limit flags, as designed.
TEST_F(DeviceConfiguration, ZeroPointUpDownAndMoveTo) {
  openWithSpeeds(5000, 5000, 5000);
  recordedDialogPress(IDC_DCFG_DOWN);
  recordedDialogType(IDC_DCFG_MOVE_TO_BOX, "-2000000000");  // to the end of the travel
  recordedDialogPress(IDC_DCFG_MOVE_TO);
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_DCFG_ANSWER), "Z=-100.0") << "axis 0, shown as Z";
  EXPECT_TRUE(hasLine("L-40000", sentCommands())) << "no further than the travel";

  virtualSerialClearWritten();
  recordedDialogPress(IDC_DCFG_ZERO_POINT);
  recordedDialogPress(IDC_DCFG_UP);
  runDialog();
  EXPECT_EQ(recordedDialogText(IDC_DCFG_ANSWER), "Z=0.0");
  EXPECT_THAT(sentCommands(), ::testing::ElementsAre("z", "Z", "p", "p", "D 6 0", "G 5 0"))
      << "the move after the zero point is refused";
}

TEST_F(DeviceConfiguration, SendAndSetSendTheCommandBoxAndRecieveShowsTheAnswer) {
  openWithSpeeds(1000, 1000, 1000);
  serialLink.positionUm[0] = 12.5;
  recordedDialogType(IDC_DCFG_COMMAND, "G 5 100");
  recordedDialogPress(IDC_DCFG_SET);
  recordedDialogType(IDC_DCFG_COMMAND, "P");
  recordedDialogPress(IDC_DCFG_SEND);
  recordedDialogPress(IDC_DCFG_RECEIVE);
  recordedDialogPress(IDC_DCFG_CLOSE_PORT);
  recordedDialogPress(IDC_DCFG_SEND);
  runDialog();
  EXPECT_EQ(sentCommands(), (Commands{"G 5 100", "P"}));
  EXPECT_EQ(linesAfter("text 1002: ", recordedDialogCalls()),
            (Commands{"Z=12.5", "Z=12.5", "P0\r\n", "Z=12.5"}));
  EXPECT_TRUE(hasLine("message Arduino Error: Fail to send command"));
}

// A raw command may have raised the laser behind the program's back.
TEST_F(DeviceConfiguration, CloseAlwaysSwitchesTheLaserOffOnTheBoard) {
  openWithSpeeds(1000, 1000, 1000);
  for (bool wasOn : {false, true}) {
    if (wasOn) SwitchLaser(laser, 1);
    virtualSerialClearWritten();
    runDialog();
    EXPECT_EQ(sentCommands(), (Commands{"D 6 0", "G 5 0"})) << wasOn;
  }
}

TEST_F(DeviceConfiguration, CameraInitializeReconnectsAndSetsAutomaticThenManual) {
  recordedDialogPress(IDC_DCFG_CAMERA_INITIALIZE);
  runDialog();
  EXPECT_TRUE(recordedDialogChecked(IDC_DCFG_CAMERA_CONNECTED));
  const auto& log = virtualCameraLog();
  auto automatic = std::find(log.begin(), log.end(), "set GainAuto Continuous");
  EXPECT_NE(std::find(automatic, log.end(), "set GainAuto Off"), log.end());
}

}  // namespace
