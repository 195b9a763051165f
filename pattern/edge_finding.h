// Edge finding: the dark cells of a pattern grid that border bright cells or the grid's
// border, with a code that says on which sides (units: left/right, tens: below/above in
// row order), listed in raster order into a point table of 10,000 entries. Called by
// "Find Edges" on targetPattern and by raster writing on its fine and coarse rasters.
#pragma once

#include <cstdint>

#include "pattern/pattern_stores.h"

// Units digit: 1 the left neighbour (x - 1) is bright, 2 the right one, 3 both. Tens
// digit: 10 the neighbour at y - 1, 20 the one at y + 1, 30 both. 0 for a bright cell
// or a dark cell with four dark neighbours; outside the grid counts as bright.
int32_t edgeCode(const int32_t* cells, int width, int height, int x, int y);

// Clears edgeCodes[x][y] for the width x height cells, then lists every edge cell (rows
// by increasing y, each by increasing x) into points and writes its code. At the
// 10,000th point the scan stops and that point's code stays 0. Shows "Edge points:%d
// found " as the main window's text. cells has width cells a row.
void findEdges(const int32_t* cells, int32_t** edgeCodes, EdgePoint* points, int32_t& count,
               int width, int height);

// The dark cells of targetPattern at 1..998 (x and y) into remainingPoints, painted red
// on the main window at (x, 1000 - y); "Remaining points:%d found " on the status line.
void scanRemainingPoints();
