// The main window's own small commands and first states: see shell_commands.h.
#include "app/shell_commands.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "camera/Basler_camera.h"
#include "camera/camera_commands.h"
#include "jobs/raster_writing.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "pattern/line_pattern.h"
#include "pattern/pattern_stores.h"
#include "resources/resource.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/system_services.h"

int blinkMs = 500;

namespace {

constexpr int kBlinkMinMs = 1;
constexpr int kBlinkMaxMs = 5000;
constexpr int kBlinkBoxChars = 11;  // GetWindowTextA limit: ten characters

std::string formatted(const char* format, int value) {
  char text[100];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

}  // namespace

void showBlinkDuration() { feedbackSetBoxText(Box::Blink, formatted("%d", blinkMs)); }

void blinkLaser() {
  int typedMs = 0;
  if (std::sscanf(feedbackGetBoxText(Box::Blink, kBlinkBoxChars).c_str(), "%d", &typedMs) == 1) {
    blinkMs = std::clamp(typedMs, kBlinkMinMs, kBlinkMaxMs);
  }
  showBlinkDuration();
  SwitchLaser(laser, 1);
  uint64_t startMs = systemTickMs();
  do {
    if (waitResponsive(1) != 1) break;  // stopped, or the window is closing
  } while (systemTickMs() - startMs < static_cast<uint64_t>(blinkMs));
  SwitchLaser(laser, 0);
}

void toggleCheckBox(int& flag, int controlId) {
  flag = flag == 0 ? 1 : 0;
  feedbackSetCheck(controlId, flag != 0);
}

void showFirstStates() {
  feedbackCheckRadio(IDC_MOUNT, IDC_WAFER, IDC_MOUNT);
  feedbackSetCheck(IDC_CENTER_WRITING_ONLY, centerWritingOnly != 0);
  feedbackSetCheck(IDC_MASK_LAYER, maskImage.valid != 0);
  feedbackSetCheck(IDC_LINES_LAYER, linesEnabled != 0);
  feedbackSetCheck(IDC_MARK_LAYER, alignmentMarkImage.valid != 0);
  feedbackSetBoxText(Box::WritingArea, formatted("%d", station.magnification));
  feedbackSetBoxText(Box::WritingSpeed, formatted("%d", station.writingSpeed));
  showStagePosition();
  showFirstCameraFrame();
  char exposure[100];
  std::snprintf(exposure, sizeof exposure, "%.0f", camera.exposureTime);
  feedbackSetBoxText(Box::Gain, formatted("%d", camera.gain));
  feedbackSetBoxText(Box::Exposure, exposure);
}
