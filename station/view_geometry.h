// Display geometry of the station record: derives the writing-area, scaled-area and
// camera rectangles, cell counts and preview size from the zoom and the magnification.
// It does not draw: the zoom steps and the redraw of the layers are display_layers.h.
#pragma once

#include "station/station.h"

constexpr double kZoomInFactor = 4.0 / 3.0;  // one zoom-in step
constexpr double kZoomOutFactor = 0.75;      // one zoom-out step
constexpr int kZoomInSteps = 6;              // the zoom never exceeds (4/3)^6

// Clamps the zoom and recomputes every derived field. Returns the new progressSteps.
int recomputeViewGeometry(StationParameters& parameters);
