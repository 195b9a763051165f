// The virtual station's own time line: the board, its port and the camera keep time on it.
// On the virtual clock (the tests, the forecast) it is the exact virtual time, whichever
// host timer the program is shown (sim/virtual_clock.h); in telvane-sim.exe it is the
// program's own clock (sim/station_clock_seam.cpp).
#pragma once

#include <cstdint>

uint64_t stationClockNowMs();
void stationClockSleepMs(uint32_t milliseconds);
