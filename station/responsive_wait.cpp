#include "station/responsive_wait.h"

#include <cstdint>

#include "station/feedback.h"
#include "station/station.h"
#include "station/stop_actions.h"
#include "station/system_services.h"

int writingActive = 0;
int completedWaits = 0;

namespace {
constexpr uint32_t kSliceMs = 10;  // sleep between looks at an empty queue
// How many messages taken by waits are being handled: the commands they carry run inside
// the operation whose wait took them.
int dispatchingWaits = 0;
}  // namespace

int operationRunning() {
  return writingActive == 1 || station.focusingActive == 1 || station.moveBusy == 1 ||
                 dispatchingWaits > 0
             ? 1
             : 0;
}

int waitResponsive(int milliseconds) {
  // Only the low 32 bits are kept: after 49.7 days of uptime the subtraction below sees a
  // huge elapsed time and the wait ends at once. Operations already rely on this.
  const uint32_t startMs = static_cast<uint32_t>(systemTickMs());
  const uint64_t waitMs = milliseconds > 0 ? static_cast<uint64_t>(milliseconds) : 0;
  QueuedMessage message;
  for (;;) {
    if (!feedbackTakeMessage(message)) {
      systemSleepMs(kSliceMs);
      if (systemTickMs() - startMs >= waitMs) {
        ++completedWaits;
        return kWaitTimeUp;
      }
      continue;
    }
    // The window was closed during the operation: end it at once, so that the program
    // does not run on without a window until the operation is done.
    if (message.kind == QueuedKind::Quit) {
      station.stopRequested = 1;
      return kWaitClosing;
    }
    const bool click = message.kind == QueuedKind::LeftButtonDown;
    // Focusing asks the same question as writing.
    if (click && (writingActive == 1 || station.focusingActive == 1)) {
      // The stage runs on while the operator decides: the laser must not dwell meanwhile.
      const double voltage = darkenLaserForQuestion();
      if (feedbackMessageBox("Do you want to stop writing, now ?", "Warning", MessageKind::YesNo) ==
          Answer::Yes) {
        station.stopRequested = 1;
        return kWaitStopConfirmed;
      }
      restoreLaserAfterQuestion(voltage);
    }
    if (click && writingActive == 0 && message.target == QueuedTarget::DisplayWindow) {
      stopAllMotors();
      feedbackMessageBox("Motor has stopped.", "Notice", MessageKind::Ok);
      station.stopRequested = 1;
      return kWaitMotorsStopped;
    }
    ++dispatchingWaits;
    feedbackDispatchTakenMessage();
    --dispatchingWaits;
  }
}
