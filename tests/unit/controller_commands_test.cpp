#include "link/controller_commands.h"

#include "link_fixture.h"

using ControllerCommandsTest = LinkTest;
using ::testing::ElementsAre;

TEST_F(ControllerCommandsTest, SpeedsAreClampedAndStoredBeforeScaling) {
  openWithSpeeds(1000, 1000, 100);
  int zero = 0, fast = 7000, yZero = 0, z = 100;
  SetAxisSpeed(serialLink, 0, zero);
  SetAxisSpeed(serialLink, 0, fast);
  SetAxisSpeed(serialLink, 1, yZero);
  SetAxisSpeed(serialLink, 2, z);
  EXPECT_THAT(sentCommands(), ElementsAre("s6", "s32000", "S1", "T160"));
  EXPECT_EQ(fast, 5000);
  EXPECT_EQ(serialLink.speedUmPerS[1], 1);
}

// Micrometres become steps truncated toward zero with each axis's own factor.
TEST_F(ControllerCommandsTest, AMoveSendsTheTargetInStepsAndLeavesThePositionToTheWait) {
  openWithSpeeds(1000, 1000, 100);
  MoveAxisTo(serialLink, 0, -0.1);
  MoveAxisTo(serialLink, 1, 12.5);
  MoveAxisTo(serialLink, 2, -100.0);
  EXPECT_THAT(sentCommands(), ElementsAre("m0", "M20", "L-160"));
  EXPECT_EQ(serialLink.lastMoveSteps, -160);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], 0.0);
}

TEST_F(ControllerCommandsTest, TheFirstMoveAfterAZeroIsRefusedUntilBothDirectionsCleared) {
  openWithSpeeds(1000, 1000, 100);
  ZeroAxis(serialLink, 1);
  MoveAxisTo(serialLink, 1, 50.0);   // up: refused, upper flag stays
  MoveAxisTo(serialLink, 1, -50.0);  // down: clears upper, refused by lower
  EXPECT_EQ(serialLink.upperLimit[1], 0.0);
  EXPECT_NE(serialLink.lowerLimit[1], 0.0);
  MoveAxisTo(serialLink, 1, 50.0);  // up: clears lower, sent
  EXPECT_THAT(sentCommands(), ElementsAre("Z", "M80"));
  EXPECT_EQ(serialLink.lowerLimit[1], 0.0);
}

TEST_F(ControllerCommandsTest, TheSameLaserVoltageIsSentOnce) {
  openWithSpeeds(1000, 1000, 100);
  SetLaserVoltage(laser, 2.5);
  SetLaserVoltage(laser, 2.5);
  SetLaserVoltage(laser, 5.0);
  EXPECT_THAT(sentCommands(), ElementsAre("G 5 127", "G 5 255"));
  EXPECT_EQ(recordedBoxText(Box::LaserVoltage), "5.00");
}

TEST_F(ControllerCommandsTest, LaserOnAndOffSwitchThePinTheVoltageAndTheRadios) {
  openWithSpeeds(1000, 1000, 100);
  station.insideVoltage = 2.3;
  EXPECT_EQ(SwitchLaser(laser, 1), 0);
  EXPECT_EQ(SwitchLaser(laser, 0), 1);
  EXPECT_EQ(SwitchLaser(laser, 0), 0);  // already off: no second G 5 0
  EXPECT_THAT(sentCommands(), ElementsAre("D 6 5", "G 5 117", "D 6 0", "G 5 0", "D 6 0"));
  EXPECT_TRUE(hasLine("radio 3000-3001: 3000"));
  EXPECT_TRUE(hasLine("radio 3000-3001: 3001"));
}

// Mode 2 goes back to the state before the last switch; the lamp's resends it unchanged.
TEST_F(ControllerCommandsTest, RestoreReturnsTheLaserAndTheLampToTheirPreviousState) {
  openWithSpeeds(1000, 1000, 100);
  SwitchLaser(laser, 0);
  SwitchLaser(laser, 1);  // previous: off
  SwitchLaser(laser, 0);  // previous: on
  SwitchIllumination(1);  // previous 0
  SwitchIllumination(0);  // previous 1
  virtualSerialClearWritten();
  SwitchLaser(laser, 2);
  EXPECT_EQ(laser.laserOn, 1);
  EXPECT_EQ(SwitchIllumination(2), 1);
  EXPECT_EQ(SwitchIllumination(2), 1);
  EXPECT_THAT(sentCommands(), ElementsAre("D 6 5", "G 5 117", "D 7 5", "D 7 5"));
  EXPECT_TRUE(hasLine("radio 3105-3106: 3105"));
}
