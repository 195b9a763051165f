// The program's global records, defined in one unit so that they are constructed in
// this order: the station record (its geometry is needed by the next), the data paths
// (the mark grid is sized from the station's cell counts), the serial link, the laser
// output.
#include "app/data_paths.h"
#include "app/station.h"
#include "link/serial_link.h"

StationParameters station;
DataPaths dataPaths;
SerialLink serialLink;
LaserOutput laser;
