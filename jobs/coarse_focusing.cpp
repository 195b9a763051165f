// Coarse focusing: see coarse_focusing.h. Reads top-down like the job: prepare, lift,
// walk down measuring, go to the best place, and the one end of the run that a stop
// reaches as well.
#include "jobs/coarse_focusing.h"

#include <cstdio>
#include <string>

#include "camera/Basler_camera.h"
#include "camera/live_view.h"
#include "camera/live_view_control.h"
#include "jobs/focus_measure.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"

namespace {

constexpr int kAxisX = 0;
constexpr int kAxisZ = 2;
constexpr int kStepWaitMs = 10;
constexpr int kSettleWaitMs = 100;
constexpr double kPeakOverLeast = 1.2;  // the peak must stand this far above the least value
constexpr double kFallFromPeak = 0.8;   // and the present value have fallen below this share
constexpr int kStepsPastPeak = 3;       // more than this many steps past the best
constexpr double kUsableSharpness = 0.1;
constexpr double kFocusLiftUm = 500.0;
constexpr int kFocusSpeedUmPerS = 300;

// The pumping wait between steps; true when the operator stopped the run.
bool stoppedAfterWait(int milliseconds) {
  return waitResponsive(milliseconds) == 0 || station.stopRequested == 1;
}

float measureFreshFrame(ImageBuffer& image) {
  grabAndShowLiveFrame();
  return frameSharpness(image);
}

std::string focusText(const char* format, int step, float sharpness, float best) {
  char text[100];
  std::snprintf(text, sizeof text, format, step, sharpness, best);
  return text;
}

// Everything between the start and the end of the run; returns early on a stop.
void liftAndSearch(double liftUm, int speedUmPerS, ImageBuffer& image) {
  SerialLink& link = serialLink;
  showStatus("Course Focusing has started");
  if (stoppedAfterWait(kStepWaitMs)) return;

  grabAndShowLiveFrame();
  const double startPosition = QueryAxisPosition(link, kAxisX);
  double bestPosition = startPosition;

  showStatus("Stage lifting");
  int fastSpeed = 2 * speedUmPerS;
  SetAxisSpeed(link, kAxisX, fastSpeed);
  MoveAxisBy(link, kAxisZ, liftUm);
  if (stoppedAfterWait(kStepWaitMs)) return;

  int speed = speedUmPerS;
  SetAxisSpeed(link, kAxisX, speed);
  QueryAxisPosition(link, kAxisX);
  showStagePosition();
  showStatus("Stage going down");
  if (stoppedAfterWait(kStepWaitMs)) return;

  float best = measureFreshFrame(image);
  float least = best;
  int bestStep = 0;
  for (int step = 0; step < 2 * kFocusSteps; ++step) {
    const float sharpness = measureFreshFrame(image);
    if (sharpness > best) {
      best = sharpness;
      bestPosition = link.positionUm[kAxisX];
      bestStep = step;
    }
    if (sharpness < least) least = sharpness;
    if (searchPassedPeak(best, least, sharpness, step, bestStep)) break;

    MoveAxisBy(link, kAxisZ, -liftUm / kFocusSteps);
    showStatus(focusText("Focusing [%d]: %.2f/%.2f", step, sharpness, best));
    showStagePosition();
    if (link.lowerLimit[kAxisX] != 0.0) {
      showStatus(focusText("Z Limited [%d]: %.2f/%.2f", step, sharpness, best));
      break;
    }
    if (stoppedAfterWait(kStepWaitMs)) return;
  }

  SetAxisSpeed(link, kAxisX, fastSpeed);
  if (best > kUsableSharpness) {
    MoveAxisAndWait(link, kAxisZ, bestPosition);
    showStatus("Course Focusing Completed");
  } else {
    MoveAxisAndWait(link, kAxisZ, startPosition);
    feedbackMessageBox("Please, adjust the sample posion", "Error in focusing", MessageKind::Ok);
  }
  waitResponsive(kSettleWaitMs);
}

}  // namespace

bool searchPassedPeak(float best, float least, float sharpness, int step, int bestStep) {
  return best > least * kPeakOverLeast && best * kFallFromPeak > sharpness &&
         step > bestStep + kStepsPastPeak && best > kUsableSharpness;
}

void CoarseFocusing(double liftUm, int speedUmPerS, ImageBuffer& image) {
  station.focusingActive = 1;
  station.stopRequested = 0;
  // The live view's grabs would compete with the search's own frames.
  const int liveViewWasOn = setLiveView(kLiveViewQueryNow);
  setLiveView(kLiveViewOff);

  liftAndSearch(liftUm, speedUmPerS, image);

  QueryAxisPosition(serialLink, kAxisX);
  showStatus(statusLine);
  showStagePosition();
  station.focusingActive = 0;
  grabAndShowLiveFrame();
  if (liveViewWasOn) setLiveView(kLiveViewOn);
}

void onFocusCommand() {
  if (operationRunning()) return;
  SwitchLaser(laser, 0);
  SwitchIllumination(1);
  CoarseFocusing(kFocusLiftUm, kFocusSpeedUmPerS, displayFrame);
  feedbackFocusMainWindow();
}
