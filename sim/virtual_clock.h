// Control of the virtual clock that the tests link in place of the real one: time
// moves only when the program sleeps or a test advances it.
//
// The program reads the clock through systemTickMs/systemSleepMs, and the virtual station
// (board, port, camera) through virtualClockNow/virtualClockAdvance. The two agree unless
// a host timer is chosen: the forecast then lets the program see the tick count and sleep
// the way Windows or Wine gives them, while the station keeps exact time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <utility>

#include "station/system_services.h"

enum class HostTimer {
  Exact,          // tick count and sleeps to the millisecond (the tests)
  WindowsTick,    // Windows at its default timer resolution: the tick count moves in steps
                  // of 15.625 ms and a sleep ends on the first step at or after its time
  WineServerTick  // Wine: a sleep is exact, but the tick count is the time of the program's
                  // last call into the Wine server, and a sleep is no such call
};

void virtualClockReset(uint64_t startMs = 1'000'000);  // exact again, too
void virtualClockAdvance(uint64_t milliseconds);
uint64_t virtualClockNow();
void virtualClockSetLocalTime(const LocalTime& time);  // the clock's date, frozen
void virtualClockSetDesktop(const std::filesystem::path& folder);
void virtualClockSetHostTimer(HostTimer timer);
// The program called the system (a window, message or port call): under Wine this brings
// the tick count up to date.
void virtualClockSystemCalled();
// Told of every advance, from a sleep or a test, with the times before and after it; an
// empty function stops the telling. The forecast attributes the time this way.
void virtualClockObserve(std::function<void(uint64_t fromMs, uint64_t toMs)> observer);
