// The dwell watch: a stretch of exposing while standing opens when both hold and closes
// when either ends; between two observations nothing changes, since the board only
// changes the laser or starts and ends moves when it takes a command or a move ends.
#include "sim/board_dwell.h"

#include <algorithm>
#include <cstdio>

void dwellObserve(DwellWatch& watch, const DwellSample& sample) {
  const bool exposing = sample.laserPin > 0 || sample.laserPwm > 0;
  BoardDwell& present = watch.present;
  if (exposing && sample.standing) {
    if (!watch.exposedStanding) {
      present = BoardDwell();
      present.startMs = sample.nowMs;
      present.xUm = sample.xUm;
      present.yUm = sample.yUm;
      present.commandBefore = sample.lastCommand;
      watch.exposedStanding = true;
    }
    present.laserPin = std::max(present.laserPin, sample.laserPin);
    present.laserPwm = std::max(present.laserPwm, sample.laserPwm);
    return;
  }
  if (!watch.exposedStanding) return;
  watch.exposedStanding = false;
  present.durationMs = sample.nowMs - present.startMs;
  if (present.durationMs <= kDwellMs) return;
  present.commandEnding = sample.lastCommand;
  watch.finished.push_back(present);
}

std::vector<BoardDwell> dwellsUntil(const DwellWatch& watch, uint64_t nowMs) {
  std::vector<BoardDwell> dwells = watch.finished;
  if (watch.exposedStanding && nowMs - watch.present.startMs > kDwellMs) {
    dwells.push_back(watch.present);
    dwells.back().durationMs = nowMs - watch.present.startMs;
  }
  return dwells;
}

std::string dwellLine(const BoardDwell& dwell) {
  char line[96];
  std::snprintf(line, sizeof line, "dwell %llu ms at %.1f %.1f",
                static_cast<unsigned long long>(dwell.durationMs), dwell.xUm, dwell.yUm);
  return line;
}
