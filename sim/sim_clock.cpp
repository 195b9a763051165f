// The station models take time as a parameter; this unit only anchors the library.
#include "sim/sim_clock.h"
