// The clock seam on a virtual clock: Sleep advances it, nothing else does.
#include "sim/virtual_clock.h"

namespace {
uint64_t nowMs = 1'000'000;
LocalTime localTime = {2026, 11, 22, 14, 5, 0};
std::function<void(uint64_t, uint64_t)> observer;

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

void virtualClockReset(uint64_t startMs) { nowMs = startMs; }
void virtualClockAdvance(uint64_t milliseconds) { advance(milliseconds); }
uint64_t virtualClockNow() { return nowMs; }
void virtualClockSetLocalTime(const LocalTime& time) { localTime = time; }
void virtualClockObserve(std::function<void(uint64_t, uint64_t)> newObserver) {
  observer = std::move(newObserver);
}
void virtualClockSetDesktop(const std::filesystem::path& folder) { desktop() = folder; }

uint64_t systemTickMs() { return nowMs; }
void systemSleepMs(uint32_t milliseconds) { advance(milliseconds); }
LocalTime systemLocalTime() { return localTime; }
std::filesystem::path systemDesktopFolder() { return desktop(); }
