// Placeholder until the foundation lands.
#include "app/status_display.h"

#include <string>

#include "app/feedback.h"
#include "link/serial_link.h"

namespace {
std::string previousLine;
}

int showStatus(const char* text) {
  std::string line = std::string(text) + std::string(23, ' ');
  feedbackPaintStatus(line, previousLine);
  previousLine = line;
  return 1;
}

void showStagePosition() {
  const Box boxes[kAxisCount] = {Box::PositionX, Box::PositionY, Box::PositionZ};
  for (int axis = 0; axis < kAxisCount; ++axis)
    feedbackSetBoxText(boxes[axis], std::to_string(static_cast<int>(serialLink.positionUm[axis])));
}
