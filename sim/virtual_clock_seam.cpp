// The clock seam on a virtual clock: Sleep advances it, nothing else does.
#include "sim/virtual_clock.h"

namespace {
uint64_t nowMs = 1'000'000;
LocalTime localTime = {2026, 11, 22, 14, 5, 0};
std::filesystem::path desktop = std::filesystem::temp_directory_path();
}  // namespace

void virtualClockReset(uint64_t startMs) { nowMs = startMs; }
void virtualClockAdvance(uint64_t milliseconds) { nowMs += milliseconds; }
uint64_t virtualClockNow() { return nowMs; }
void virtualClockSetLocalTime(const LocalTime& time) { localTime = time; }
void virtualClockSetDesktop(const std::filesystem::path& folder) { desktop = folder; }

uint64_t systemTickMs() { return nowMs; }
void systemSleepMs(uint32_t milliseconds) { nowMs += milliseconds; }
LocalTime systemLocalTime() { return localTime; }
std::filesystem::path systemDesktopFolder() { return desktop; }
