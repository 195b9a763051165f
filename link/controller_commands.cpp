// Command texts and their scaling. The limit gating of MoveAxisTo is deliberately
// asymmetric: after a zero both flags are set, so the first move is always refused and
// moves flow again only once moves in both directions have cleared the flags.
#include "link/controller_commands.h"

#include <algorithm>
#include <cstdio>

#include "station/feedback.h"
#include "station/truncation.h"

namespace {

constexpr double kAxisFactor[kAxisCount] = {4.0, 1.0, 1.0};
constexpr const char* kZeroCommand[kAxisCount] = {"z", "Z", "Y"};
constexpr const char* kMoveFormat[kAxisCount] = {"m%d", "M%d", "L%d"};
constexpr const char* kSpeedFormat[kAxisCount] = {"s%d", "S%d", "T%d"};
constexpr const char* kAccelerationFormat[kAxisCount] = {"a%d", "A%d", "b%d"};
constexpr const char* kStopCommand[kAxisCount] = {"n", "N", "O"};

constexpr const char* kOriginCommand = "z";
constexpr int kAccelerationAtOpen = 5000;

constexpr double kZeroedLimitFlag = 10000.0;
constexpr double kFullScaleVolts = 5.0;
constexpr double kFullScalePwm = 255.0;

int illuminationState = 0;
int previousLaserState = 0;
int previousIlluminationState = 0;

bool validAxis(int axis) { return axis >= 0 && axis < kAxisCount; }

template <typename... Args>
void sendFormatted(SerialLink& link, const char* format, Args... args) {
  std::snprintf(link.commandText, sizeof link.commandText, format, args...);
  SendCommand(link, link.commandText);
}

}  // namespace

int OpenSerialLink(SerialLink& link, bool ownedByMainWindow) {
  const int opened = OpenSerialPort(link, ownedByMainWindow);
  if (opened != 1) return opened;
  // The board takes its present X as its origin. The program's limit flags stay down:
  // raising them here (as "Zero Point" does) would refuse the first X move after start-up.
  SendCommand(link, kOriginCommand);
  for (int axis = 0; axis < kAxisCount; ++axis)
    link.positionUm[axis] = QueryAxisPosition(link, axis);
  SetAxisSpeed(link, 0, link.speedUmPerS[0]);
  SetAxisAcceleration(link, 0, kAccelerationAtOpen);
  SetAxisSpeed(link, 1, link.speedUmPerS[1]);
  SetAxisSpeed(link, 2, link.speedUmPerS[2]);
  return 1;
}

double QueryAxisPosition(SerialLink& link, int axis) {
  if (!validAxis(axis)) return 0.0;
  if (link.failed == 1) return link.positionUm[axis];
  SendCommand(link, kPositionQuery[axis]);
  if (link.handle == kInvalidSerialHandle) return 0.0;
  const uint32_t count = ReadPositionReply(link);
  for (uint32_t i = 0; i < count; ++i) {
    int steps = 0;
    if (link.ioBuffer[i] == kPositionReplyMarker[axis] &&
        std::sscanf(link.ioBuffer + i + 1, "%d", &steps) == 1)
      link.positionUm[axis] = StepsToMicrometres(axis, steps);
  }
  return link.positionUm[axis];
}

int32_t MicrometresToSteps(int axis, double micrometres) {
  // A position the board reported at the end of its step range, moved further, would not
  // fit: the count stays at the end of the range.
  return truncatedToInt(micrometres * 0.2 * 8.0 * kAxisFactor[axis]);
}

double StepsToMicrometres(int axis, int32_t steps) { return steps * 5.0 / 8.0 / kAxisFactor[axis]; }

void ZeroAxis(SerialLink& link, int axis) {
  if (!validAxis(axis)) return;
  link.positionUm[axis] = 0.0;
  SendCommand(link, kZeroCommand[axis]);
  link.upperLimit[axis] = kZeroedLimitFlag;
  link.lowerLimit[axis] = -kZeroedLimitFlag;
}

void MoveAxisTo(SerialLink& link, int axis, double targetUm) {
  if (!validAxis(axis)) return;
  if (link.failed == 1) {
    link.positionUm[axis] = targetUm;
    return;
  }
  if (link.upperLimit[axis] != 0.0) {
    if (targetUm >= link.positionUm[axis]) return;
    link.upperLimit[axis] = 0.0;
  }
  if (link.lowerLimit[axis] != 0.0) {
    if (link.positionUm[axis] >= targetUm) return;
    link.lowerLimit[axis] = 0.0;
  }
  link.lastMoveSteps = MicrometresToSteps(axis, targetUm);
  sendFormatted(link, kMoveFormat[axis], link.lastMoveSteps);
  if (link.failed == 1) link.positionUm[axis] = targetUm;
}

void SetAxisSpeed(SerialLink& link, int axis, int& speedUmPerS) {
  speedUmPerS = std::clamp(speedUmPerS, kMinAxisSpeedUmPerS, kMaxAxisSpeedUmPerS);
  if (!validAxis(axis)) return;
  link.speedUmPerS[axis] = speedUmPerS;
  sendFormatted(link, kSpeedFormat[axis], MicrometresToSteps(axis, speedUmPerS));
}

void SetAxisAcceleration(SerialLink& link, int axis, int value) {
  value = std::clamp(value, kMinAxisSpeedUmPerS, kMaxAxisSpeedUmPerS);
  if (!validAxis(axis)) return;
  sendFormatted(link, kAccelerationFormat[axis], MicrometresToSteps(axis, value));
}

void StopAxis(SerialLink& link, int axis) {
  if (validAxis(axis)) SendCommand(link, kStopCommand[axis]);
}

void SetAnalogOutput(SerialLink& link, int channel, int value) {
  sendFormatted(link, "G %d %d", channel, value);
}

void SetDigitalOutput(SerialLink& link, int pin, int level) {
  sendFormatted(link, "D %d %d", pin, level);
}

void SetLaserVoltage(LaserOutput& laser, double volts) {
  if (volts == laser.laserVoltage) return;
  laser.laserVoltage = volts;
  SetAnalogOutput(serialLink, laser.laserChannel,
                  static_cast<int>(volts / kFullScaleVolts * kFullScalePwm));
  char text[32];
  std::snprintf(text, sizeof text, "%.2lf", volts);
  feedbackSetBoxText(Box::LaserVoltage, text);
}

int SwitchLaser(LaserOutput& laser, int mode) {
  if (mode == 2) mode = previousLaserState;
  if (mode == 0) {
    previousLaserState = laser.laserOn;
    feedbackCheckRadio(kLaserOnRadio, kLaserOffRadio, kLaserOffRadio);
    SetDigitalOutput(serialLink, kLaserPin, kPinOff);
    SetLaserVoltage(laser, 0.0);
    laser.laserOn = 0;
  } else if (mode == 1) {
    previousLaserState = laser.laserOn;
    feedbackCheckRadio(kLaserOnRadio, kLaserOffRadio, kLaserOnRadio);
    SetDigitalOutput(serialLink, kLaserPin, kPinOn);
    SetLaserVoltage(laser, station.insideVoltage);
    laser.laserOn = 1;
  }
  feedbackFocusMainWindow();
  return previousLaserState;
}

int SwitchIllumination(int mode) {
  if (mode == 0 || mode == 1) {
    previousIlluminationState = illuminationState;
    illuminationState = mode;
  }
  if (mode >= 0 && mode <= 2) {
    bool on = mode == 2 ? previousIlluminationState != 0 : mode == 1;
    feedbackCheckRadio(kIlluminationOnRadio, kIlluminationOffRadio,
                       on ? kIlluminationOnRadio : kIlluminationOffRadio);
    SetDigitalOutput(serialLink, kIlluminationPin, on ? kPinOn : kPinOff);
  }
  feedbackFocusMainWindow();
  return previousIlluminationState;
}
