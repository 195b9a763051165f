// The controller board's command set: every command text, its argument and scaling, and
// the effect each command has on the program's own records (positions, limit flags,
// speeds, laser and lamp states). Owns the micrometre/step conversion and the laser and
// illumination switch states. It does not wait for motion (stage_motion.h) nor own the
// port (serial_link.h). Every command is formatted into the link's command text and sent
// with SendCommand; nothing waits for an acknowledgement.
#pragma once

#include <cstdint>

#include "link/serial_link.h"
#include "station/station.h"

// Per axis (0 X, 1 Y, 2 Z): query letter, reply marker (Z answers with lower-case q),
// arrival letter and the limit mark that may follow it.
inline constexpr const char* kPositionQuery[kAxisCount] = {"p", "P", "Q"};
inline constexpr char kPositionReplyMarker[kAxisCount] = {'p', 'P', 'q'};
inline constexpr char kArrivalLetter[kAxisCount] = {'X', 'Y', 'Z'};
constexpr char kLimitMark = 'l';

// Laser and lamp outputs of the board.
constexpr int kLaserPin = 6;
constexpr int kIlluminationPin = 7;
constexpr int kPinOn = 5;
constexpr int kPinOff = 0;
// Laser "On"/"Off" and illumination "On"/"Off" radio buttons of the main window.
constexpr int kLaserOnRadio = 3000;
constexpr int kLaserOffRadio = 3001;
constexpr int kIlluminationOnRadio = 3105;
constexpr int kIlluminationOffRadio = 3106;

// Speeds (um/s) and the acceleration parameter are clamped, never refused.
constexpr int kMinAxisSpeedUmPerS = 1;
constexpr int kMaxAxisSpeedUmPerS = 5000;

// Opens the port (OpenSerialPort) and greets the board: its X origin, the three positions
// read back, the speeds and the X acceleration sent again. 1 open and configured, 0
// failed, 2 the first read of the line settings failed (the port stays open).
int OpenSerialLink(SerialLink& link, bool ownedByMainWindow);
// Queries and returns the axis position in micrometres; the stored one when nothing came.
double QueryAxisPosition(SerialLink& link, int axis);

// steps = um x 0.2 x 8.0 x axis factor (X 4, Y 1, Z 1), truncated toward zero; beyond the
// 32-bit range, its end. Also used for speeds (um/s -> steps/s) and the acceleration parameter.
int32_t MicrometresToSteps(int axis, double micrometres);
// um = steps x 5.0 / 8.0 / axis factor, not rounded.
double StepsToMicrometres(int axis, int32_t steps);

// Position := 0, then "z"/"Z"/"Y"; both limit flags set, so the next move is refused.
void ZeroAxis(SerialLink& link, int axis);
// Absolute target in um: "m%d"/"M%d"/"L%d" in steps, gated by the limit flags. With the
// link failed only the position model moves; otherwise the arrival wait updates it.
void MoveAxisTo(SerialLink& link, int axis, double targetUm);
// "s%d"/"S%d"/"T%d" in steps/s; speedUmPerS is clamped in place and stored in the link.
void SetAxisSpeed(SerialLink& link, int axis, int& speedUmPerS);
// "a%d"/"A%d"/"b%d"; value clamped to 1..5000 and scaled like a speed; nothing stored.
void SetAxisAcceleration(SerialLink& link, int axis, int value);
// "n"/"N"/"O": the axis stops where it is.
void StopAxis(SerialLink& link, int axis);
// "G %d %d": pulse-width output channel, 0..255.
void SetAnalogOutput(SerialLink& link, int channel, int value);
// "D %d %d": pin level 0 (off) or 5 (on).
void SetDigitalOutput(SerialLink& link, int pin, int level);
// Sent only when the voltage changes; shown with "%.2lf" in the laser voltage box.
void SetLaserVoltage(LaserOutput& laser, double volts);
// Mode 0 off, 1 on (at the inside voltage), 2 restore the previous state. Returns the
// previous state.
int SwitchLaser(LaserOutput& laser, int mode);
int SwitchIllumination(int mode);
