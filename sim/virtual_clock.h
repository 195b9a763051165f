// Control of the virtual clock that the tests link in place of the real one: time
// moves only when the program sleeps or a test advances it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <utility>

#include "station/system_services.h"

void virtualClockReset(uint64_t startMs = 1'000'000);
void virtualClockAdvance(uint64_t milliseconds);
uint64_t virtualClockNow();
void virtualClockSetLocalTime(const LocalTime& time);  // the clock's date, frozen
void virtualClockSetDesktop(const std::filesystem::path& folder);
// Told of every advance, from a sleep or a test, with the times before and after it; an
// empty function stops the telling. The forecast attributes the time this way.
void virtualClockObserve(std::function<void(uint64_t fromMs, uint64_t toMs)> observer);
