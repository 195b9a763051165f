// The clock seam on a virtual clock: Sleep advances it, nothing else does. The station's
// time line is the same clock, read exactly.
#include "sim/station_clock.h"
#include "sim/virtual_clock.h"

namespace {
uint64_t nowMs = 1'000'000;
HostTimer hostTimer = HostTimer::Exact;
uint64_t wineTickMs = nowMs;  // the tick count as the Wine server last wrote it
LocalTime localTime = {2026, 11, 22, 14, 5, 0};
std::function<void(uint64_t, uint64_t)> observer;

// Windows' clock interrupt at its default rate: 64 a second.
constexpr uint64_t kInterruptsPerSecond = 64;
uint64_t interruptAtOrBefore(uint64_t ms) {
  return ms * kInterruptsPerSecond / 1000 * 1000 / kInterruptsPerSecond;
}
uint64_t interruptAtOrAfter(uint64_t ms) {
  const uint64_t count = (ms * kInterruptsPerSecond + 999) / 1000;
  return (count * 1000 + kInterruptsPerSecond - 1) / kInterruptsPerSecond;
}

void advance(uint64_t milliseconds) {
  const uint64_t from = nowMs;
  nowMs += milliseconds;
  if (observer) observer(from, nowMs);
}
// A function-local static: the data paths ask for the desktop while the program's
// globals are constructed, which may be before this unit's globals are.
std::filesystem::path& desktop() {
  static std::filesystem::path folder = std::filesystem::temp_directory_path();
  return folder;
}
}  // namespace

void virtualClockReset(uint64_t startMs) {
  nowMs = wineTickMs = startMs;
  hostTimer = HostTimer::Exact;
}
void virtualClockAdvance(uint64_t milliseconds) {
  advance(milliseconds);
  wineTickMs = nowMs;  // the station's time passes in the program's port or window calls
}
uint64_t virtualClockNow() { return nowMs; }
uint64_t stationClockNowMs() { return nowMs; }
void stationClockSleepMs(uint32_t milliseconds) { virtualClockAdvance(milliseconds); }
void virtualClockSetLocalTime(const LocalTime& time) { localTime = time; }
void virtualClockObserve(std::function<void(uint64_t, uint64_t)> newObserver) {
  observer = std::move(newObserver);
}
void virtualClockSetDesktop(const std::filesystem::path& folder) { desktop() = folder; }
void virtualClockSetHostTimer(HostTimer timer) {
  hostTimer = timer;
  wineTickMs = nowMs;
}
void virtualClockSystemCalled() { wineTickMs = nowMs; }

uint64_t systemTickMs() {
  switch (hostTimer) {
    case HostTimer::WindowsTick: return interruptAtOrBefore(nowMs);
    case HostTimer::WineServerTick: return wineTickMs;
    case HostTimer::Exact: break;
  }
  return nowMs;
}

void systemSleepMs(uint32_t milliseconds) {
  if (hostTimer == HostTimer::WindowsTick && milliseconds > 0)
    advance(interruptAtOrAfter(nowMs + milliseconds) - nowMs);
  else
    advance(milliseconds);
}
LocalTime systemLocalTime() { return localTime; }
std::filesystem::path systemDesktopFolder() { return desktop(); }
