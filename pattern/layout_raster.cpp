#include "pattern/layout_raster.h"

LayoutRaster heldLayout;
double fieldOverlapUm = 0;
