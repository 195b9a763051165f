// Placeholder: the geometry recompute lands with the foundation.
#include "app/station.h"

StationParameters::StationParameters() {}

StationParameters station;
LaserOutput laser;
