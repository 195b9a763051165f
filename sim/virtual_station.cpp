// Placeholder until the virtual board lands: a stage that never moves.
#include "sim/virtual_station.h"

StationView virtualStationView(uint64_t) { return {}; }
std::vector<ExposureSegment> virtualStationExposure(uint64_t) { return {}; }
