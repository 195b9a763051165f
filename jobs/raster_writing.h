// Raster writing: the target pattern written cluster by cluster in serpentine strokes,
// fine in the centre and coarse outside. Called by the "Start Writing" run (its step 7)
// with writingActive 1 and no stop requested; it leaves writingActive to the run.
//
// The rasters: 0 is dark (a cell to write), 1 bright, in every raster. The fine raster is
// 1000 x 1000; the coarse raster is n x n with n = 1000 / s, row after row with stride n,
// where s is cellGrid.cellSize. Edge finding and grouping mark and gather each raster;
// the working raster of a cluster is cellGrid.visitTable, the progress raster finalPattern.
#pragma once

#include "pattern/cluster_table.h"
#include "pattern/pattern_stores.h"

constexpr int kFineCentreFirst = 390;  // the fine pass covers 390 <= x, y < 610
constexpr int kFineCentreEnd = 610;
constexpr int kCoarseCentreHalfCells = 100;  // the coarse centre is n/2 +- 100/s cells
constexpr int kClusterPasses = 3;            // stroke passes over one cluster at most
constexpr int kClusterPauseMs = 500;         // pause after each cluster

// "Start Writing" for the raster layers: target built, rasters built, the fine pass at
// the inside speed and voltage, then (unless "Center Writing Only") Z to the X reading
// plus Dz and the coarse pass at the outside speed and voltage.
void StartRasterWriting();
// "Center Writing Only" (0/1): the run ends after the fine pass of the central square.
extern int centerWritingOnly;

// The field a run of several fields is writing: where it lies from the writing reference
// (um, added to every stroke's place and taken off the defocus base, so each field is
// defocused as the first), and the cells the run wrote before it and writes in all, which
// the progress and the time estimate count. All 0 while one writing area is written.
struct FieldShare {
  double offsetXUm = 0;
  double offsetYUm = 0;
  int cellsBefore = 0;
  int cellsInRun = 0;
};
extern FieldShare fieldShare;

// coarse := the n x n block raster (stride n; the central square bright, elsewhere 1 when
// at least s x s / 2 of the block's source cells are bright), fine := the source inside
// the central 220 x 220, 1 outside. Clears the written count. Returns n.
int BuildWritingRasters(const MaskPattern& source, MaskPattern& coarse, MaskPattern& fine);

// Writes every non-empty cluster, in index order, with grid factor 1 (fine) or s
// (coarse); a stop ends it after the cluster under way.
void WriteClusters(Cluster* clusters, int count, int factor);

// Strokes along the longer side of the cluster's box over its marked cells, up to three
// passes while cells strictly inside the box are left; 0 V after each pass and on stop.
void WriteCluster(const Cluster& cluster, int factor);

// The factor x factor pattern cells of block (column, row) are written: 0 in the progress
// raster and green on the main window; the block leaves the working raster and counts.
void MarkWritten(int column, int row, int factor);

// The stage position (um) of pattern column or row `cell` written with grid factor m.
double StageXForColumn(int cell, int factor);
double StageYForRow(int cell, int factor);
