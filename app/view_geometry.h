// Display geometry of the station record: derives the writing-area, scaled-area and
// camera rectangles, cell counts and preview size from the zoom and the magnification,
// and steps the zoom. It does not draw; the layers are redrawn by display_layers.h.
#pragma once

#include "app/station.h"

constexpr double kZoomInFactor = 4.0 / 3.0;  // one zoom-in step
constexpr double kZoomOutFactor = 0.75;      // one zoom-out step
constexpr int kZoomInSteps = 6;              // the zoom never exceeds (4/3)^6

// Clamps the zoom and recomputes every derived field. Returns the new progressSteps.
int recomputeViewGeometry(StationParameters& parameters);

// Zoom steps of the "Zoom In" (1), "Zoom Out" (-1), "Show" (0) and "All" (10) commands
// and of the mouse wheel; "All" acts only while the mask or mark layer is shown. Then
// recomputes, redraws the display layers and refreshes the time estimate.
void changeZoom(int step);
