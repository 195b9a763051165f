#include "station/status_display.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/system_services.h"
#include "station/truncation.h"

char statusLine[kStatusLineBytes] = {};
char previousStatusLine[kStatusLineBytes] = {};
int shownPositionUm[3] = {};

namespace {
constexpr int kSpeedCeilingUmPerS = 800;
// A zero speed would divide by zero; the estimate treats it as the slowest stage speed.
constexpr int kSpeedFloorUmPerS = 1;
}  // namespace

int showStatus(const std::string& text) {
  std::snprintf(statusLine, sizeof statusLine, "%s                       ", text.c_str());
  feedbackPaintStatus(statusLine, previousStatusLine);
  std::memcpy(previousStatusLine, statusLine, sizeof statusLine);
  return 1;
}

int showProgress(const std::string& text) {
  feedbackSetBoxText(Box::Progress, text);
  return 1;
}

void showPosition(const double positionUm[3]) {
  const Box boxes[3] = {Box::PositionX, Box::PositionY, Box::PositionZ};
  for (int axis = 0; axis < 3; ++axis) {
    shownPositionUm[axis] = static_cast<int>(positionUm[axis]);
    char text[32];
    std::snprintf(text, sizeof text, "%d", shownPositionUm[axis]);
    feedbackSetBoxText(boxes[axis], text);
  }
}

void showTimeEstimate(int cellSize) {
  uint64_t elapsedMin = 0;
  if (writingActive == 1) {
    // startTick holds the low 32 bits as a signed int; widening it the way C does keeps
    // the elapsed time consistent with how the run recorded it.
    elapsedMin = (systemTickMs() - static_cast<uint64_t>(station.startTick)) / 1000 / 60;
  }
  int speed = station.writingSpeed;
  if (speed > kSpeedCeilingUmPerS) speed = kSpeedCeilingUmPerS;
  if (speed < kSpeedFloorUmPerS) speed = kSpeedFloorUmPerS;
  const int f = cellSize;
  // In double, as the magnification from Config.txt may be any int: exact, and each
  // division truncated as in int arithmetic, for every product below 2^53.
  const double scaledCells = static_cast<double>(station.cellCount / f / f) *
                             station.magnification * station.magnification;
  const int estimatedMin = truncatedToInt(std::trunc(std::trunc(scaledCells / speed) / 60) + 2);
  char text[100];
  std::snprintf(text, sizeof text, "%d (%d) min.", static_cast<int>(elapsedMin), estimatedMin);
  feedbackSetBoxText(Box::Time, text);
}
