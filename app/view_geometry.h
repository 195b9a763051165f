// View geometry: recomputes every derived rectangle and count of the station record.
// Placeholder until the foundation lands.
#pragma once

#include "app/station.h"

int recomputeViewGeometry(StationParameters& parameters);
