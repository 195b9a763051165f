// The writing simulation: the target pattern resampled at the display zoom and painted
// pure blue over the last camera picture, which is also the display's redraw after every
// zoom step. resamplePattern and composeSimulation are the two stages; the redraw that
// runs them is changeZoom (display_layers.h): mode 0 redraw only ("Simulate Writing",
// "Show"), 1 zoom in, -1 zoom out, 10 the whole writing area.
#pragma once

#include "pattern/pattern_stores.h"

// destination := source seen at scale zoom x magnification (single precision, truncated
// sampling): shrunk and centred among bright cells, or its centre magnified. Sets
// cellGrid.zoomedWidth and zoomedHeight.
void resamplePattern(const MaskPattern& source, MaskPattern& destination);

// picture (the display window, picture.width x picture.height, rows bottom-up) := blue
// where the zoomed pattern is dark inside the writing area, else the camera picture inside
// the camera field, else white. Cell (i, j) shows at display point (left + i, bottom - j)
// of the writing area, where raster writing paints it when written.
void composeSimulation(const MaskPattern& zoomed, ImageBuffer picture);
