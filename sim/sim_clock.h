// Time for the virtual station's models: milliseconds, from whichever clock drives them
// (the virtual clock in tests, real time in telvane-sim.exe and telvane-board-sim).
#pragma once

#include <cstdint>

using SimTimeMs = uint64_t;
