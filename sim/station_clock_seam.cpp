// The station's time line in real time: the virtual board and camera of telvane-sim.exe
// keep the program's own clock.
#include "sim/station_clock.h"
#include "station/system_services.h"

uint64_t stationClockNowMs() { return systemTickMs(); }
void stationClockSleepMs(uint32_t milliseconds) { systemSleepMs(milliseconds); }
