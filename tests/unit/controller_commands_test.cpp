#include "link/controller_commands.h"

#include <functional>

#include "link_fixture.h"

using ControllerCommandsTest = LinkTest;

// What each call puts on the wire: micrometres become steps truncated toward zero (X 6.4,
// Y and Z 1.6 steps/um), speeds are clamped to 1..5000 um/s and stored clamped, a move
// leaves the position to its wait, a voltage goes out only when it changes, and the laser's
// switch sets its pin, its voltage and its radio buttons.
TEST_F(ControllerCommandsTest, EachCallSendsItsCommandScaledAndClamped) {
  openWithSpeeds(1000, 1000, 100);
  station.insideVoltage = 2.3;
  int speed = 0;
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { SetAxisSpeed(serialLink, 0, speed = 0); }, "s6"},
      {[&] { SetAxisSpeed(serialLink, 1, speed = 0); }, "S1"},
      {[&] { SetAxisSpeed(serialLink, 2, speed = 100); }, "T160"},
      {[&] { SetAxisSpeed(serialLink, 0, speed = 7000); }, "s32000"},
      {[] { MoveAxisTo(serialLink, 0, -0.1); }, "m0"},
      {[] { MoveAxisTo(serialLink, 1, 12.5); }, "M20"},
      {[] { MoveAxisTo(serialLink, 2, -100.0); }, "L-160"},
      {[] { SetLaserVoltage(laser, 2.5), SetLaserVoltage(laser, 2.5); }, "G 5 127"},
      {[] { EXPECT_EQ(SwitchLaser(laser, 1), 0); }, "D 6 5,G 5 117"},
      {[] { SwitchLaser(laser, 0), SwitchLaser(laser, 0); }, "D 6 0,G 5 0,D 6 0"},
      // Mode 2 goes back to the state before the last switch; the lamp's resends it as it is.
      {[] { SwitchLaser(laser, 1), SwitchLaser(laser, 0), SwitchLaser(laser, 2); },
       "D 6 5,G 5 117,D 6 0,G 5 0,D 6 5,G 5 117"},
      {[] { SwitchIllumination(1), SwitchIllumination(0), SwitchIllumination(2); },
       "D 7 5,D 7 0,D 7 5"},
  };
  for (const auto& [call, sent] : cases) {
    virtualSerialClearWritten();
    call();
    EXPECT_EQ(joined(sentCommands()), sent);
  }
  EXPECT_EQ(speed, 5000) << "clamped in place";
  EXPECT_EQ(serialLink.speedUmPerS[1], 1);
  EXPECT_DOUBLE_EQ(serialLink.positionUm[2], 0.0);
  EXPECT_EQ(recordedBoxText(Box::LaserVoltage), "2.30");
  EXPECT_EQ(SwitchIllumination(2), 1) << "the lamp's state before its last switch";
  EXPECT_EQ(laser.laserOn, 1);
  EXPECT_TRUE(hasLine("radio 3105-3106: 3105"));
  EXPECT_TRUE(hasLine("radio 3000-3001: 3000"));
  EXPECT_TRUE(hasLine("radio 3000-3001: 3001"));
}

TEST_F(ControllerCommandsTest, TheFirstMoveAfterAZeroIsRefusedUntilBothDirectionsCleared) {
  openWithSpeeds(1000, 1000, 100);
  ZeroAxis(serialLink, 1);
  MoveAxisTo(serialLink, 1, 50.0);   // up: refused, upper flag stays
  MoveAxisTo(serialLink, 1, -50.0);  // down: clears upper, refused by lower
  MoveAxisTo(serialLink, 1, 50.0);   // up: clears lower, sent
  MoveAxisTo(serialLink, 1, -50.0);  // and down again
  EXPECT_EQ(joined(sentCommands()), "Z,M80,M-80");
}
