// Placeholder until the foundation lands.
#include "app/view_geometry.h"

int recomputeViewGeometry(StationParameters& parameters) { return parameters.progressSteps; }
