// The settings line Config.txt as the fuzzer writes it, taken the way the program takes
// it: read at start-up with the geometry recomputed, the zoom put back to the
// magnification's as a picture import does, the first live picture with the laser spot
// at the laser shift, the time estimate and the raster stage mapping that scale by the
// magnification, then written back at exit and read once more.
#include <cstddef>
#include <cstdint>

#include "camera/Basler_camera.h"
#include "camera/live_render.h"
#include "fuzz/fuzz_support.h"
#include "jobs/raster_writing.h"
#include "link/serial_link.h"
#include "pattern/pattern_stores.h"
#include "station/data_paths.h"
#include "station/settings.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/view_geometry.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  displayFrame.width = kDisplayWidth;
  displayFrame.height = kDisplayHeight;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  freshStation();
  const auto config = writeInputFile("Config.txt", data, size);
  if (readSettingsFile(config, serialLink.comPort)) recomputeViewGeometry(station);
  laser.laserOn = 1;
  RenderLive(SurfaceWindow::Display, displayFrame);
  showTimeEstimate(cellGrid.cellSize);
  for (int cell : {0, kPatternSide - 1}) {
    StageXForColumn(cell, cellGrid.cellSize);
    StageYForRow(cell, cellGrid.cellSize);
  }
  station.zoom = 1.0 / station.magnification;
  recomputeViewGeometry(station);
  writeSettingsFile(config, serialLink.comPort);
  readSettingsFile(config, serialLink.comPort);
  return 0;
}
