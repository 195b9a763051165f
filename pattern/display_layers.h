// Redraw of the display window's layers after the geometry changed: the target pattern
// from the mask and alignment-mark pictures, resampled at the zoom and composed over the
// camera picture (pattern/writing_simulation.h). It owns no geometry: changeZoom steps the
// zoom, recomputes the geometry (station/view_geometry.h) and redraws, and that is the one
// redraw path of the zoom steps and of "Simulate Writing".
#pragma once

void redrawDisplayLayers();

// Zoom steps of the "Zoom In" (1), "Zoom Out" (-1), "Show" (0) and "All" (10) commands
// and of the mouse wheel; "All" acts only while the mask or mark layer is shown. Then
// recomputes, redraws the display layers and refreshes the time estimate.
void changeZoom(int step);
