// Moves and their waits. The wait trusts the board's arrival letter, a position reply or
// a queried position near the target, and otherwise gives up after its time-out without
// raising an error: the next move then starts from the last position read.
#include "link/stage_motion.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "link/controller_commands.h"
#include "station/responsive_wait.h"
#include "station/status_display.h"
#include "station/system_services.h"

namespace {

constexpr uint32_t kWaitReadMaxBytes = 50;
constexpr double kArrivedWithinUm = 1.0;
constexpr double kXYArrivedWithinUm = 2.0;
constexpr double kXYSettledWithinUm = 1.0;
constexpr int kWaitSliceMs = 10;

int32_t elapsedMs(uint64_t startMs) { return static_cast<int32_t>(systemTickMs() - startMs); }

// Compared in 64 bits: the longest time-out is the largest int, which the 32-bit elapsed
// time would step over into negative values, and the wait would never end.
bool timedOut(uint64_t startMs, int timeoutMs) {
  return static_cast<int64_t>(systemTickMs() - startMs) >= timeoutMs;
}

bool isPositionReply(char c) { return c == 'p' || c == 'P' || c == 'Q'; }

}  // namespace

int MoveTimeoutMs(const SerialLink& link, int axis, double targetUm) {
  // A speed never set (no board was ever opened) counts as the minimum speed.
  double speed = std::max(link.speedUmPerS[axis], kMinAxisSpeedUmPerS);
  double timeout = 1000.0 + std::fabs(targetUm - link.positionUm[axis]) * 2.0 * 1000.0 / speed;
  return static_cast<int>(std::min(timeout, double(std::numeric_limits<int32_t>::max())));
}

int WaitForAxis(SerialLink& link, int axis, double targetUm, int timeoutMs) {
  int cycles = 0;
  int shortReads = 0;
  int status = kWaitTimedOut;
  uint64_t startMs = systemTickMs();
  if (link.handle == kInvalidSerialHandle) return status;

  int arrivalAt = -1;  // index of the arrival letter in the input/output buffer
  for (;;) {
    if (timedOut(startMs, timeoutMs)) break;
    link.lastCallResult =
        serialRead(link.handle, link.ioBuffer, kWaitReadMaxBytes, link.bytesTransferred);
    bool finished = false;
    if (link.lastCallResult && link.bytesTransferred > 0) {
      uint32_t count = link.bytesTransferred;
      link.ioBuffer[count] = '\0';
      for (uint32_t i = 0; i < count; ++i) {
        char c = link.ioBuffer[i];
        if (c == kArrivalLetter[axis]) {
          arrivalAt = static_cast<int>(i);
          break;
        }
        if (c == '\r' || c == '\n') break;
        int steps = 0;
        if (isPositionReply(c) && std::sscanf(link.ioBuffer + i + 1, "%d", &steps) == 1) {
          link.positionUm[axis] = StepsToMicrometres(axis, steps);
          if (std::fabs(link.positionUm[axis] - targetUm) < kArrivedWithinUm) {
            status = kWaitPositionReply;
            finished = true;
            break;
          }
        }
      }
      if (arrivalAt >= 0 || finished) break;
    } else {
      QueryAxisPosition(link, axis);
      if (link.failed == 0 && std::fabs(link.positionUm[axis] - targetUm) < kArrivedWithinUm) {
        status = kWaitQueriedPosition;
        break;
      }
    }
    showStagePosition();
    // A confirmed stop, a click that stopped the motors and a closed window all end it.
    if (waitResponsive(kWaitSliceMs) != kWaitTimeUp) break;
    ++cycles;
    if (link.bytesTransferred < 2) ++shortReads;
  }

  if (arrivalAt >= 0) {
    status = kWaitArrivalLetter;
    if (link.ioBuffer[arrivalAt + 1] == kLimitMark) {
      status = kWaitLimitReached;
      if (targetUm > link.positionUm[axis])
        link.upperLimit[axis] = 1.0;
      else
        link.lowerLimit[axis] = 1.0;
    }
  }
  char text[120];
  int32_t elapsed = elapsedMs(startMs);
  if (status == kWaitTimedOut) {
    std::snprintf(text, sizeof text, "time passed: %d/%d, Fail to read:%d/%d", elapsed, timeoutMs,
                  shortReads, cycles);
  } else {
    std::snprintf(text, sizeof text, "Z arrived(%d): %d/%d", status, elapsed, timeoutMs);
    link.positionUm[axis] = targetUm;
    if (status == kWaitLimitReached) {
      double position = QueryAxisPosition(link, axis);
      std::snprintf(text, sizeof text, "Limited(%d): %.1lf", status, position);
    }
  }
  showStatus(text);
  showStagePosition();
  waitResponsive(kWaitSliceMs);
  return status;
}

void MoveAxisAndWait(SerialLink& link, int axis, double targetUm) {
  if (axis < 0 || axis >= kAxisCount || targetUm == link.positionUm[axis]) return;
  int timeoutMs = MoveTimeoutMs(link, axis, targetUm);
  MoveAxisTo(link, axis, targetUm);
  WaitForAxis(link, axis, targetUm, timeoutMs);
}

void showStagePosition() { showPosition(serialLink.positionUm); }

void MoveAxisBy(SerialLink& link, int axis, double deltaUm) {
  if (axis < 0 || axis >= kAxisCount) return;
  MoveAxisAndWait(link, axis, link.positionUm[axis] + deltaUm);
}

XYMovePlan PlanXYMove(double dxUm, double dyUm, int speedUmPerS) {
  // A speed of 0 would give an endless move; the board's slowest speed is 1 um/s.
  double speed = std::max(speedUmPerS, kMinAxisSpeedUmPerS);
  bool alongX = dxUm > dyUm;
  double longer = alongX ? dxUm : dyUm;
  double shorter = alongX ? dyUm : dxUm;
  XYMovePlan plan = {};
  plan.travelMs = static_cast<uint64_t>(longer * 1000.0 / speed);
  // A move shorter than a millisecond runs the other axis at the slowest speed.
  int otherSpeed =
      plan.travelMs == 0 ? kMinAxisSpeedUmPerS : static_cast<int>(shorter * 1000.0 / plan.travelMs);
  plan.xSpeedUmPerS = alongX ? speedUmPerS : otherSpeed;
  plan.ySpeedUmPerS = alongX ? otherSpeed : speedUmPerS;
  return plan;
}

void MoveXY(double xUm, double yUm, int speedUmPerS) {
  SerialLink& link = serialLink;
  double dx = std::fabs(xUm - link.positionUm[0]);
  double dy = std::fabs(yUm - link.positionUm[1]);
  XYMovePlan plan = PlanXYMove(dx, dy, speedUmPerS);
  char text[64];
  std::snprintf(text, sizeof text, "Dist. to move %.1lfum", std::max(dx, dy));
  showStatus(text);
  SetAxisSpeed(link, 0, plan.xSpeedUmPerS);
  SetAxisSpeed(link, 1, plan.ySpeedUmPerS);
  MoveAxisTo(link, 0, xUm);
  MoveAxisTo(link, 1, yUm);

  double previousDistance = 0.0;
  uint64_t startMs = systemTickMs();
  showStatus("Started    ");
  while (systemTickMs() - startMs < plan.travelMs) {
    QueryAxisPosition(link, 0);
    QueryAxisPosition(link, 1);
    showStagePosition();
    double distance =
        dx > dy ? std::fabs(link.positionUm[0] - xUm) : std::fabs(link.positionUm[1] - yUm);
    if (distance <= kXYArrivedWithinUm &&
        std::fabs(distance - previousDistance) < kXYSettledWithinUm)
      break;
    previousDistance = distance;
    // A confirmed stop of writing lets the stroke under way run to its end at the 0 V the
    // stop question set: the stage is then where the model says when the engine sees the
    // stop. Stopped motors and a closing program end the move at once.
    const int waited = waitResponsive(kWaitSliceMs);
    if (waited == kWaitMotorsStopped || waited == kWaitClosing) break;
  }
  link.positionUm[0] = xUm;
  link.positionUm[1] = yUm;
  showStagePosition();
}
