// Placeholder until the foundation lands.
#include "app/status_display.h"

#include <string>

#include "app/feedback.h"

int showStatus(const char* text) {
  feedbackPaintStatus(text, "");
  return 1;
}

int showStagePosition() { return 1; }
