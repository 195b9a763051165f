// Raster writing: see raster_writing.h.
#include "link/raster_writing.h"

void StartRasterWriting() {}
