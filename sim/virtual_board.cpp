// The board model. Time only moves when the caller says so (boardReceive, boardAdvance),
// so the same model runs on the virtual clock of the tests and on real time.
#include "sim/virtual_board.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace {

constexpr char kMoveLetter[kBoardAxes] = {'m', 'M', 'L'};
constexpr char kSpeedLetter[kBoardAxes] = {'s', 'S', 'T'};
constexpr char kAccelLetter[kBoardAxes] = {'a', 'A', 'b'};
constexpr char kQueryLetter[kBoardAxes] = {'p', 'P', 'Q'};
constexpr char kReplyMarker[kBoardAxes] = {'p', 'P', 'q'};  // Z answers with lower case
constexpr char kZeroLetter[kBoardAxes] = {'z', 'Z', 'Y'};
constexpr char kStopLetter[kBoardAxes] = {'n', 'N', 'O'};
constexpr char kArrivalLetter[kBoardAxes] = {'X', 'Y', 'Z'};
constexpr const char* kGarbage = "\xfe%&";
// Slower than this a stepper stalls; the firmware runs slower speed commands at this speed.
constexpr int32_t kSlowestStepsPerS = 160;
constexpr double kTravelUm = 25000.0;

int axisOf(const char* letters, char c) {
  for (int axis = 0; axis < kBoardAxes; ++axis)
    if (letters[axis] == c) return axis;
  return -1;
}

// Where the axis is (steps, fractional) and how fast it goes tMs after the move's start.
void profileAt(const BoardAxis& a, double tMs, double& steps, double& stepsPerS) {
  if (tMs >= a.durationMs || a.phases.empty()) {
    steps = double(a.toSteps);
    stepsPerS = 0;
    return;
  }
  size_t i = a.phases.size() - 1;
  while (i > 0 && a.phases[i].atMs > tMs) --i;
  const MovePhase& p = a.phases[i];
  const double t = (tMs - p.atMs) / 1000.0;
  steps = p.steps + p.stepsPerS * t + 0.5 * p.accel * t * t;
  stepsPerS = p.stepsPerS + p.accel * t;
}

// The profile from `steps` at speed v0 (signed) to target at cruise speed v and
// acceleration a: a move the other way, or one too short to stop in, first brakes to rest;
// then the axis speeds up (or slows down) to the cruise speed, or as far as it can still
// stop on the target, cruises, and brakes to rest on the target.
void planMove(BoardAxis& axis, double steps, double v0, double target, double v, double a) {
  axis.phases.clear();
  double atMs = 0;
  const double distance = target - steps;
  const double direction = distance >= 0 ? 1.0 : -1.0;
  if (v0 != 0 && (v0 * direction < 0 || v0 * v0 / (2 * a) > std::fabs(distance))) {
    const double brakeS = std::fabs(v0) / a;
    const double brakeAccel = v0 > 0 ? -a : a;
    axis.phases.push_back({atMs, steps, v0, brakeAccel});
    steps += v0 * brakeS / 2;
    atMs += brakeS * 1000.0;
    v0 = 0;
  }
  const double left = std::fabs(target - steps);
  const double towards = target >= steps ? 1.0 : -1.0;
  const double u = std::fabs(v0);
  const double peak = std::min(v, std::sqrt(a * left + u * u / 2));
  const double changeS = std::fabs(peak - u) / a;
  const double changeSteps = std::fabs(peak * peak - u * u) / (2 * a);
  const double brakeSteps = peak * peak / (2 * a);
  const double cruiseS = peak > 0 ? std::max(0.0, left - changeSteps - brakeSteps) / peak : 0;
  axis.phases.push_back({atMs, steps, towards * u, towards * (peak >= u ? a : -a)});
  atMs += changeS * 1000.0;
  steps += towards * changeSteps;
  axis.phases.push_back({atMs, steps, towards * peak, 0});
  atMs += cruiseS * 1000.0;
  steps += towards * peak * cruiseS;
  axis.phases.push_back({atMs, steps, towards * peak, -towards * a});
  axis.durationMs = atMs + peak / a * 1000.0;
}

int64_t machineStepsAt(const BoardAxis& a, uint64_t nowMs) {
  if (!a.moving) return a.machineSteps;
  double steps = 0, speed = 0;
  profileAt(a, double(nowMs - a.startMs), steps, speed);
  return std::llround(steps);
}

void emit(VirtualBoard& board, const std::string& reply) {
  if (board.faults.silent || board.hungUp) return;
  ++board.repliesSent;
  int n = board.faults.dropEveryNthReply;
  if (n > 0 && board.repliesSent % n == 0) return;
  if (board.faults.garbage) board.output.insert(board.output.end(), kGarbage, kGarbage + 3);
  board.output.insert(board.output.end(), reply.begin(), reply.end());
}

double machineUm(const VirtualBoard& board, int axis, uint64_t nowMs) {
  const BoardAxis& a = board.axes[axis];
  return double(machineStepsAt(a, nowMs)) / a.stepsPerUm;
}

// Extends the exposure log up to the stage position at nowMs.
void sampleExposure(VirtualBoard& board, uint64_t nowMs) {
  double x = machineUm(board, 0, nowMs);
  double y = machineUm(board, 1, nowMs);
  // The laser emits at the intensity of its channel: the writing programs set only the
  // voltage and leave the switch pin low.
  // A piece at rest counts too: the resist takes dose while the spot stands still.
  const int pwm = boardPwm(board, kBoardLaserChannel);
  if (pwm > 0 &&
      (x != board.lastSampleXUm || y != board.lastSampleYUm || nowMs > board.lastSampleMs))
    board.exposure.push_back({board.lastSampleXUm, board.lastSampleYUm, x, y, pwm,
                              double(board.lastSampleMs), double(nowMs),
                              machineUm(board, 2, nowMs)});
  board.lastSampleXUm = x;
  board.lastSampleYUm = y;
  board.lastSampleMs = std::max(board.lastSampleMs, nowMs);
}

void startMove(VirtualBoard& board, int axis, int32_t targetSteps) {
  BoardAxis& a = board.axes[axis];
  // A running move hands its place and speed on: the axis never jumps in speed.
  double steps = double(a.machineSteps);
  double speed = 0;
  if (a.moving) profileAt(a, double(board.nowMs - a.startMs), steps, speed);
  a.machineSteps = std::llround(steps);
  a.fromSteps = a.machineSteps;
  int64_t target = a.originSteps + targetSteps;
  a.endsAtLimit = target > a.maxMachineSteps || target < a.minMachineSteps;
  a.toSteps = std::clamp(target, a.minMachineSteps, a.maxMachineSteps);
  const double cruise = std::max(kSlowestStepsPerS, a.speedStepsPerS);
  const double accel = std::max(1, a.accelStepsPerS2);
  planMove(a, steps, speed, double(a.toSteps), cruise, accel);
  a.startMs = board.nowMs;
  a.moving = true;
}

void execute(VirtualBoard& board, const std::string& text) {
  board.commands.push_back({board.nowMs, text});
  if (text.empty()) return;
  const char letter = text[0];
  const char* rest = text.c_str() + 1;
  int value = 0;
  int second = 0;
  int axis = -1;
  if ((axis = axisOf(kMoveLetter, letter)) >= 0) {
    if (std::sscanf(rest, "%d", &value) == 1) startMove(board, axis, value);
  } else if ((axis = axisOf(kSpeedLetter, letter)) >= 0) {
    if (std::sscanf(rest, "%d", &value) == 1) board.axes[axis].speedStepsPerS = value;
  } else if ((axis = axisOf(kAccelLetter, letter)) >= 0) {
    if (std::sscanf(rest, "%d", &value) == 1)
      board.axes[axis].accelStepsPerS2 = value * kAccelUnitStepsPerS2;
  } else if ((axis = axisOf(kQueryLetter, letter)) >= 0) {
    char reply[32];
    std::snprintf(reply, sizeof reply, "%c%lld\r\n", kReplyMarker[axis],
                  static_cast<long long>(boardAxisSteps(board, axis, board.nowMs)));
    emit(board, reply);
  } else if ((axis = axisOf(kZeroLetter, letter)) >= 0) {
    board.axes[axis].originSteps = machineStepsAt(board.axes[axis], board.nowMs);
  } else if ((axis = axisOf(kStopLetter, letter)) >= 0) {
    BoardAxis& a = board.axes[axis];
    if (a.moving) {
      // The move ends here and now, and is reported like any other end of a move.
      a.machineSteps = machineStepsAt(a, board.nowMs);
      a.toSteps = a.machineSteps;
      a.moving = false;
      emit(board, std::string(1, kArrivalLetter[axis]) + "\r\n");
    }
  } else if (letter == 'G') {
    if (std::sscanf(rest, "%d %d", &value, &second) == 2) {
      sampleExposure(board, board.nowMs);
      board.pwm[value] = second;
    }
  } else if (letter == 'D') {
    if (std::sscanf(rest, "%d %d", &value, &second) == 2) {
      sampleExposure(board, board.nowMs);
      board.pins[value] = second;
    }
  }
  int hangUp = board.faults.hangUpAfterCommands;
  if (hangUp > 0 && static_cast<int>(board.commands.size()) >= hangUp) board.hungUp = true;
}

}  // namespace

double boardMoveDurationMs(double distanceSteps, double speedStepsPerS, double accelStepsPerS2) {
  double v = std::max(1.0, speedStepsPerS);
  double a = std::max(1.0, accelStepsPerS2);
  double rampDistance = v * v / a;  // both ramps together
  if (distanceSteps >= rampDistance) return (distanceSteps / v + v / a) * 1000.0;
  return 2.0 * std::sqrt(distanceSteps / a) * 1000.0;
}

void boardReset(VirtualBoard& board) {
  board = VirtualBoard();
  const double stepsPerUm[kBoardAxes] = {6.4, 1.6, 1.6};
  for (int axis = 0; axis < kBoardAxes; ++axis) {
    BoardAxis& a = board.axes[axis];
    a.stepsPerUm = stepsPerUm[axis];
    a.maxMachineSteps = static_cast<int64_t>(kTravelUm * a.stepsPerUm);
    a.minMachineSteps = -a.maxMachineSteps;
  }
}

bool boardReceive(VirtualBoard& board, const char* bytes, size_t count, uint64_t nowMs) {
  if (board.hungUp) return false;
  boardAdvance(board, nowMs);
  for (size_t i = 0; i < count && !board.hungUp; ++i) {
    if (bytes[i] != '\0') {
      board.partialCommand.push_back(bytes[i]);
      continue;
    }
    std::string text;
    text.swap(board.partialCommand);
    execute(board, text);
  }
  return true;
}

void boardAdvance(VirtualBoard& board, uint64_t nowMs) {
  for (;;) {
    uint64_t next = boardNextEventMs(board);
    if (next > nowMs) break;
    for (int axis = 0; axis < kBoardAxes; ++axis) {
      BoardAxis& a = board.axes[axis];
      if (!a.moving || a.startMs + static_cast<uint64_t>(std::ceil(a.durationMs)) != next) continue;
      board.nowMs = std::max(board.nowMs, next);
      sampleExposure(board, next);
      a.machineSteps = a.toSteps;
      a.moving = false;
      std::string report(1, kArrivalLetter[axis]);
      if (a.endsAtLimit) report.push_back('l');
      emit(board, report + "\r\n");
    }
  }
  board.nowMs = std::max(board.nowMs, nowMs);
  sampleExposure(board, board.nowMs);
}

uint64_t boardNextEventMs(const VirtualBoard& board) {
  uint64_t next = std::numeric_limits<uint64_t>::max();
  for (const BoardAxis& a : board.axes)
    if (a.moving) next = std::min(next, a.startMs + static_cast<uint64_t>(std::ceil(a.durationMs)));
  return next;
}

size_t boardTakeOutput(VirtualBoard& board, char* buffer, size_t maxBytes) {
  size_t count = std::min(maxBytes, board.output.size());
  std::copy_n(board.output.begin(), count, buffer);
  board.output.erase(board.output.begin(), board.output.begin() + count);
  return count;
}

int64_t boardAxisSteps(const VirtualBoard& board, int axis, uint64_t nowMs) {
  const BoardAxis& a = board.axes[axis];
  return machineStepsAt(a, nowMs) - a.originSteps;
}

double boardAxisUm(const VirtualBoard& board, int axis, uint64_t nowMs) {
  return machineUm(board, axis, nowMs);
}

int boardPin(const VirtualBoard& board, int pin) {
  auto found = board.pins.find(pin);
  return found == board.pins.end() ? 0 : found->second;
}

int boardPwm(const VirtualBoard& board, int channel) {
  auto found = board.pwm.find(channel);
  return found == board.pwm.end() ? 0 : found->second;
}
