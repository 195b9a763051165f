// The virtual controller board: a plain-record model of the station's board, fed the
// bytes the program writes and the time in milliseconds. It accepts every command of
// the protocol (each ended by a NUL byte), moves three axes in steps with a trapezoidal
// speed profile, stops them at their limit switches, answers position queries, reports
// the end of each move, keeps the pulse-width channels and pin levels, and logs what the
// laser exposed. Faults can be switched on. It knows nothing of ports or clocks: the
// virtual serial seam and telvane-board-sim feed it. The contract is docs/controller-board.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

constexpr int kBoardAxes = 3;  // 0 X, 1 Y, 2 Z
constexpr int kBoardLaserPin = 6;
constexpr int kBoardLaserChannel = 5;
constexpr int kBoardLampPin = 7;

// The acceleration parameter counts in hundreds of steps/s²: at the a32000 Telvane sends,
// X reaches a writing speed within a micrometre, as the program's unmargined XY waits need.
constexpr int32_t kAccelUnitStepsPerS2 = 100;

// One piece of a move's profile: from atMs (after the move's start) the axis is at
// steps, going at stepsPerS (signed) and changing speed by accel (signed, steps/s²).
struct MovePhase {
  double atMs, steps, stepsPerS, accel;
};

struct BoardAxis {
  int64_t machineSteps = 0;  // where the carriage is, counted from power-on
  int64_t originSteps = 0;   // machine position of the zero set by the zero command
  int32_t speedStepsPerS = 1600;
  int32_t accelStepsPerS2 = 32000 * kAccelUnitStepsPerS2;
  int64_t minMachineSteps = -160000;  // limit switches
  int64_t maxMachineSteps = 160000;
  double stepsPerUm = 1.6;  // mechanics, for the station view
  // The move under way: pieces of constant acceleration from startMs, the last ending at
  // rest on toSteps after durationMs.
  bool moving = false;
  int64_t fromSteps = 0;  // where the move started
  int64_t toSteps = 0;    // where the move ends (at a limit switch when the target is beyond)
  bool endsAtLimit = false;
  std::vector<MovePhase> phases;
  uint64_t startMs = 0;
  double durationMs = 0;
};

struct BoardFaults {
  bool silent = false;          // never sends a byte
  int dropEveryNthReply = 0;    // 0: none dropped; 1: every reply dropped
  bool garbage = false;         // noise bytes before every reply
  int hangUpAfterCommands = 0;  // 0: never; else the board goes away after that many commands
};

struct BoardCommandRecord {
  uint64_t timeMs;
  std::string text;
};

// One straight piece of the exposure log: the stage from (x0, y0) at t0Ms to (x1, y1) at
// t1Ms (a piece at rest has both ends equal), Z where it was, the laser channel's value.
struct BoardExposure {
  double x0Um, y0Um, x1Um, y1Um;
  int laserPwm;
  double t0Ms, t1Ms, zUm;
};

struct VirtualBoard {
  BoardAxis axes[kBoardAxes];
  std::map<int, int> pwm;   // "G channel value"
  std::map<int, int> pins;  // "D pin level"
  BoardFaults faults;
  bool hungUp = false;
  uint64_t nowMs = 0;  // time of the latest event handled
  std::string partialCommand;
  std::deque<char> output;  // bytes ready for the program to read
  int repliesSent = 0;
  std::vector<BoardCommandRecord> commands;  // every complete command received
  std::vector<BoardExposure> exposure;       // XY path while the laser channel was above 0
  double lastSampleXUm = 0, lastSampleYUm = 0;
  uint64_t lastSampleMs = 0;
};

// A board just reset: X 6.4 steps/um, Y and Z 1.6 steps/um, travel +-25 mm, all at rest
// at machine zero, outputs low.
void boardReset(VirtualBoard& board);
// Takes bytes written by the program at nowMs; complete commands act at once. False when
// the board has hung up (the bytes are lost).
bool boardReceive(VirtualBoard& board, const char* bytes, size_t count, uint64_t nowMs);
// Brings the model to nowMs: moves that ended report their arrival, in time order.
void boardAdvance(VirtualBoard& board, uint64_t nowMs);
// When the next move ends (after the latest event), or UINT64_MAX when nothing moves.
uint64_t boardNextEventMs(const VirtualBoard& board);
// Takes up to maxBytes of pending output.
size_t boardTakeOutput(VirtualBoard& board, char* buffer, size_t maxBytes);
// The axis position in steps from its zero at nowMs (between events: along the profile).
int64_t boardAxisSteps(const VirtualBoard& board, int axis, uint64_t nowMs);
// The carriage position in um from power-on (the station frame, unaffected by zeroing).
double boardAxisUm(const VirtualBoard& board, int axis, uint64_t nowMs);
int boardPin(const VirtualBoard& board, int pin);
int boardPwm(const VirtualBoard& board, int channel);
// How long a move of distanceSteps takes with this speed and acceleration, ms.
double boardMoveDurationMs(double distanceSteps, double speedStepsPerS, double accelStepsPerS2);
