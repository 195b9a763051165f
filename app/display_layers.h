// Redraw of the display window's layers after the geometry changed: the pattern and
// image layers (mask, alignment mark, wide view) and, while line drawing is on, the
// vector lines. It owns no geometry; view_geometry.cpp calls it after each recompute.
#pragma once

void redrawDisplayLayers();
