// The display's layers after a zoom step or "Simulate Writing": the target pattern built
// from the pictures, resampled at the zoom, composed in blue over the camera picture and
// painted on the display window, the vector lines on top while "lines" is checked, then
// the time estimate (changeZoom refreshes it).
#include "pattern/display_layers.h"

#include "camera/live_render.h"
#include "pattern/line_display.h"
#include "pattern/mask_import.h"
#include "pattern/writing_simulation.h"
#include "station/status_display.h"
#include "station/view_geometry.h"

void redrawDisplayLayers() {
  buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
  resamplePattern(targetPattern, zoomedPattern);
  composeSimulation(zoomedPattern, simulationImage);
  RenderLive(SurfaceWindow::Display, simulationImage);
  if (linesEnabled == 1) drawLines(SurfaceWindow::Display);
}

void changeZoom(int step) {
  switch (step) {
    case 1: station.zoom *= kZoomInFactor; break;
    case -1: station.zoom *= kZoomOutFactor; break;
    case 10:
      // The whole writing area is only worth showing when a pattern layer is on.
      if (maskImage.valid || alignmentMarkImage.valid) station.zoom = 1.0 / station.magnification;
      break;
    default: break;
  }
  recomputeViewGeometry(station);
  redrawDisplayLayers();
  showTimeEstimate(cellGrid.cellSize);
}
