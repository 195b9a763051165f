// Placeholder until the camera and pattern layers land.
#include "app/display_layers.h"

void redrawDisplayLayers() {}
