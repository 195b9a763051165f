// The dwell watch of the virtual board: it records every time the laser exposes (pin 6 on,
// or the intensity channel above 0) while the stage's X and Y both stand still for more
// than kDwellMs. A laser that stands on one place burns a spot into the resist, so the
// writing programs must never do it; the programs that expose on purpose while standing
// (Blink, the black tape test) are the only ones that may. The board feeds the watch at
// every change of the laser or of the stage's motion; it knows nothing of the board.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

constexpr uint64_t kDwellMs = 20;  // standing exposed longer than this is a dwell

struct BoardDwell {
  uint64_t startMs = 0;
  uint64_t durationMs = 0;
  double xUm = 0, yUm = 0;  // where the stage stood, um of the carriage
  int laserPin = 0;         // the highest pin level and channel value while it stood
  int laserPwm = 0;
  std::string commandBefore;  // the last command the board took before the dwell began
  std::string commandEnding;  // the command that ended it ("" while it goes on)
};

// What the board is at one moment.
struct DwellSample {
  uint64_t nowMs;
  bool standing;  // neither X nor Y moves
  double xUm, yUm;
  int laserPin, laserPwm;
  const std::string& lastCommand;
};

struct DwellWatch {
  std::vector<BoardDwell> finished;  // dwells that ended, oldest first
  bool exposedStanding = false;      // the present stretch of exposing while standing
  BoardDwell present;
};

// Feeds the board's state after a change: opens, widens or ends the present stretch; a
// stretch that ends longer than kDwellMs is kept as a dwell.
void dwellObserve(DwellWatch& watch, const DwellSample& sample);
// Every dwell up to nowMs, the present stretch included once it is longer than kDwellMs.
std::vector<BoardDwell> dwellsUntil(const DwellWatch& watch, uint64_t nowMs);
// "dwell <ms> ms at <x> <y>", the line telvane-board-sim and the soak run print.
std::string dwellLine(const BoardDwell& dwell);
