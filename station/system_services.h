// The clock seam: the millisecond tick count, sleeping, the local time and the user's
// desktop folder. This is every way the portable core learns the time or where the
// desktop is. Windows (clock_win32.cpp): GetTickCount64, Sleep, GetLocalTime,
// SHGetSpecialFolderPathW. Tests (sim/virtual_clock_seam.cpp): a virtual clock that moves
// only when something sleeps, so long operations run fast and deterministically.
#pragma once

#include <cstdint>
#include <filesystem>

uint64_t systemTickMs();  // milliseconds since an arbitrary start
void systemSleepMs(uint32_t milliseconds);

struct LocalTime {
  int year;    // four digits
  int month;   // 1..12
  int day;     // 1..31
  int hour;    // 0..23
  int minute;  // 0..59
  int second;  // 0..59
};
LocalTime systemLocalTime();

// The current user's desktop folder (not created when missing).
std::filesystem::path systemDesktopFolder();
