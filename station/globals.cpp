// The program's global records of the ground floor, defined in one unit so that they are
// constructed in this order: the station record (its geometry is needed by the next), the
// data paths (the mark grid is sized from the station's cell counts), the laser output.
// The serial link record is constant-initialised in serial_link.cpp.
#include "station/data_paths.h"
#include "station/station.h"

StationParameters station;
DataPaths dataPaths;
LaserOutput laser;
