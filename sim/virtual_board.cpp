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

// Distance covered after tMs of a move along its trapezoidal (or triangular) profile.
double profileSteps(const BoardAxis& a, double tMs) {
  double distance = std::fabs(double(a.toSteps - a.fromSteps));
  if (tMs >= a.durationMs) return distance;
  double t = tMs / 1000.0;
  double total = a.durationMs / 1000.0;
  double rampS = a.cruiseStepsPerS / a.accelUsed;
  if (t < rampS) return 0.5 * a.accelUsed * t * t;
  if (t < total - rampS) return 0.5 * a.cruiseStepsPerS * rampS + a.cruiseStepsPerS * (t - rampS);
  double left = total - t;
  return distance - 0.5 * a.accelUsed * left * left;
}

int64_t machineStepsAt(const BoardAxis& a, uint64_t nowMs) {
  if (!a.moving) return a.machineSteps;
  double done = profileSteps(a, double(nowMs - a.startMs));
  int64_t covered = static_cast<int64_t>(done);
  return a.toSteps >= a.fromSteps ? a.fromSteps + covered : a.fromSteps - covered;
}

void send(VirtualBoard& board, const std::string& bytes) {
  if (board.faults.delayRepliesMs > 0)
    board.delayedReplies.push_back({board.nowMs + board.faults.delayRepliesMs, bytes});
  else
    board.output.insert(board.output.end(), bytes.begin(), bytes.end());
}

void emit(VirtualBoard& board, const std::string& reply) {
  const BoardFaults& f = board.faults;
  if (f.silent || board.hungUp) return;
  ++board.repliesSent;
  if (f.dropEveryNthReply > 0 && board.repliesSent % f.dropEveryNthReply == 0) return;
  std::string bytes = f.garbage ? kGarbage + reply : reply;
  if (f.truncateRepliesTo > 0 && bytes.size() > size_t(f.truncateRepliesTo))
    bytes.resize(f.truncateRepliesTo);
  if (f.garbleReplies)
    for (char& c : bytes) c = static_cast<char>(c ^ 0x20);
  send(board, bytes);
  if (f.duplicateReplies) send(board, bytes);
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
  if (boardPwm(board, kBoardLaserChannel) > 0 &&
      (x != board.lastSampleXUm || y != board.lastSampleYUm))
    board.exposure.push_back(
        {board.lastSampleXUm, board.lastSampleYUm, x, y, boardPwm(board, kBoardLaserChannel)});
  board.lastSampleXUm = x;
  board.lastSampleYUm = y;
}

void startMove(VirtualBoard& board, int axis, int32_t targetSteps) {
  BoardAxis& a = board.axes[axis];
  a.machineSteps = machineStepsAt(a, board.nowMs);
  int64_t target = a.originSteps + targetSteps;
  a.endsAtLimit = target > a.maxMachineSteps || target < a.minMachineSteps;
  a.fromSteps = a.machineSteps;
  a.toSteps = std::clamp(target, a.minMachineSteps, a.maxMachineSteps);
  int32_t speed = std::max(kSlowestStepsPerS, a.speedStepsPerS);
  a.cruiseStepsPerS = speed;
  a.accelUsed = std::max(1, a.accelStepsPerS2);
  double distance = std::fabs(double(a.toSteps - a.fromSteps));
  // A short move never reaches the commanded speed: the profile becomes a triangle.
  a.cruiseStepsPerS = std::min(a.cruiseStepsPerS, std::sqrt(distance * a.accelUsed));
  a.durationMs = boardMoveDurationMs(distance, speed, a.accelUsed);
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
    while (!board.delayedReplies.empty() && board.delayedReplies.front().first <= next) {
      const std::string& bytes = board.delayedReplies.front().second;
      board.output.insert(board.output.end(), bytes.begin(), bytes.end());
      board.delayedReplies.pop_front();
    }
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
  if (!board.delayedReplies.empty()) next = board.delayedReplies.front().first;
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
