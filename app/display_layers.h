// Redraw of the display window's layers after the geometry changed: the target pattern
// from the mask and alignment-mark pictures, resampled at the zoom and composed over the
// camera picture (pattern/writing_simulation.h). It owns no geometry; changeZoom in
// view_geometry.cpp calls it after each recompute, and that is the one redraw path of
// the zoom steps and of "Simulate Writing".
#pragma once

void redrawDisplayLayers();
