// Nothing to redraw yet: the mask, mark and line layers arrive with pattern preparation.
#include "app/display_layers.h"

void redrawDisplayLayers() {}
