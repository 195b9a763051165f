// The program's global records, defined in one unit so that they are constructed in
// this order: the station record, the data paths, the serial link, the laser output.
#include "app/station.h"
#include "link/serial_link.h"

StationParameters::StationParameters() {}

StationParameters station;
SerialLink serialLink;
LaserOutput laser;
