// The exposure-picture seam on the virtual station: the board's log developed and saved.
#include "jobs/exposure_record.h"
#include "sim/exposure_picture.h"
#include "sim/station_clock.h"

bool recordExposurePicture(const std::filesystem::path& path, double cell0XUm, double cell0YUm,
                           double cellUm, int cells) {
  ExposureArea area;
  area.cell0XUm = cell0XUm;
  area.cell0YUm = cell0YUm;
  area.cellUm = cellUm;
  area.cells = cells;
  return saveExposurePicture(path.wstring(), area, stationClockNowMs());
}
