// Raster writing: see raster_writing.h. It reads top-down as the job: prepare (target,
// rasters), the fine pass, the defocus, the coarse pass; each pass cluster by cluster,
// each cluster stroke by stroke. Stops are checked after every stroke and cluster and
// after the defocus move.
#include "jobs/raster_writing.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "camera/display_surface.h"
#include "camera/live_view_control.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "link/stage_motion.h"
#include "pattern/edge_finding.h"
#include "pattern/grouping.h"
#include "pattern/mask_import.h"
#include "pattern/writing_simulation.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"

namespace {

constexpr int kPatternCentre = 500;  // the pattern cell under the writing reference
const Rgb kWrittenGreen{0, 255, 0};

bool stopRequested() { return station.stopRequested == 1; }

// Edge marks as the two stroke scans read them (see WriteCluster).
bool columnStartMark(int32_t v) { return (v >= 10 && v <= 13) || (v >= 30 && v <= 33); }
bool columnEndMark(int32_t v) { return (v >= 20 && v <= 23) || (v >= 30 && v <= 33); }
bool rowStartMark(int32_t v) { return v % 10 == 1 || v % 10 == 3; }
bool rowEndMark(int32_t v) { return v % 10 == 2 || v % 10 == 3; }

int32_t& workCell(int x, int y) { return cellGrid.visitTable[x][y]; }

struct ClusterBox {
  int left, low, right, high;  // least and greatest column and row
};

ClusterBox boxOf(const Cluster& cluster) {
  return {cluster.leftmost.x, cluster.topmost.y, cluster.rightmost.x, cluster.bottommost.y};
}

// The working raster holds the cluster's marked cells and nothing else inside its box.
void loadWorkingRaster(const Cluster& cluster, const ClusterBox& box) {
  for (int x = box.left; x <= box.right; ++x) {
    std::memset(&cellGrid.visitTable[x][box.low], 0,
                sizeof(int32_t) * static_cast<size_t>(box.high - box.low + 1));
  }
  for (int i = 0; i < cluster.count; ++i) {
    const EdgePoint p = cluster.points[i];
    workCell(p.x, p.y) = cellGrid.edgeCodes[p.x][p.y];
  }
}

bool cellsLeftInside(const ClusterBox& box) {
  for (int x = box.left + 1; x < box.right; ++x) {
    for (int y = box.low + 1; y < box.high; ++y) {
      if (workCell(x, y) != 0) return true;
    }
  }
  return false;
}

void showWritingProgress() {
  const int percent = station.cellCount > 0 ? station.doneCells * 100 / station.cellCount : 0;
  char text[64];
  std::snprintf(text, sizeof text, "Writing: %d%% done", percent);
  showProgress(text);
}

// One stroke along a row (alongRow) or a column of the cluster, between offsets start
// and end from the box's corner: even strokes go from start to end, odd ones back.
void writeStroke(const ClusterBox& box, bool alongRow, int line, int start, int end, int number,
                 int factor, int speed, double volts) {
  const int from = number % 2 == 0 ? start : end;
  const int to = number % 2 == 0 ? end : start;
  const int step = to >= from ? 1 : -1;
  auto column = [&](int offset) { return alongRow ? box.left + offset : box.left + line; };
  auto row = [&](int offset) { return alongRow ? box.low + line : box.low + offset; };
  MoveXY(StageXForColumn(column(from), factor), StageYForRow(row(from), factor), speed);
  // A stop confirmed on the way to the stroke's start keeps the laser dark; the cluster's
  // loop sees it right after.
  if (stopRequested()) return;
  SetLaserVoltage(laser, volts);
  for (int offset = from;; offset += step) {
    MarkWritten(column(offset), row(offset), factor);
    if (offset == to) break;
  }
  MoveXY(StageXForColumn(column(to), factor), StageYForRow(row(to), factor), speed);  // exposure
}

}  // namespace

int centerWritingOnly = 0;
FieldShare fieldShare;

double StageXForColumn(int cell, int factor) {
  return station.stageX + station.offsetX + fieldShare.offsetXUm +
         (cell * factor - kPatternCentre) * static_cast<double>(station.magnification) +
         laser.laserShiftX;
}

double StageYForRow(int cell, int factor) {
  return station.stageY + station.offsetY + fieldShare.offsetYUm +
         (cell * factor - kPatternCentre) * static_cast<double>(station.magnification) +
         laser.laserShiftY;
}

void StartRasterWriting() {
  writingActive = 1;
  station.stopRequested = 0;
  setLiveView(kLiveViewOff);
  SwitchLaser(laser, 0);
  // The defocus base is the X reading, as the station has always taken it.
  const double defocusBase = QueryAxisPosition(serialLink, 0) - fieldShare.offsetXUm;

  // Prepare: progress raster unwritten, target from the pictures, the two rasters.
  std::fill_n(finalPattern.cells, static_cast<size_t>(kPatternSide) * kPatternSide, kBrightCell);
  buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
  if (fieldShare.cellsInRun > 0) station.cellCount = fieldShare.cellsInRun;
  showTimeEstimate(cellGrid.cellSize);
  const MaskPattern* source = &targetPattern;
  if (1.0 / station.zoom != 1.0) {
    resamplePattern(targetPattern, zoomedPattern);  // never a stale zoomed target
    source = &zoomedPattern;
  }
  const int n = BuildWritingRasters(*source, coarsePattern, finePattern);
  station.doneCells = fieldShare.cellsBefore;
  if (clusterTable == nullptr) return;

  // Fine pass.
  SwitchLaser(laser, 0);
  SetAxisSpeed(serialLink, 0, station.insideSpeed);
  SetAxisSpeed(serialLink, 1, station.insideSpeed);
  findEdges(finePattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, kPatternSide,
            kPatternSide);
  groupClusters(edgePoints, edgePointCount, clusterTable, clusterCount, 1);
  WriteClusters(clusterTable, clusterCount, 1);
  if (stopRequested()) return;

  // Defocus, then the coarse pass.
  SwitchLaser(laser, 0);
  if (centerWritingOnly != 0) return;
  MoveAxisAndWait(serialLink, 2, defocusBase + station.defocusUm);
  if (stopRequested()) return;
  SetAxisSpeed(serialLink, 0, station.outsideSpeed);
  SetAxisSpeed(serialLink, 1, station.outsideSpeed);
  findEdges(coarsePattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, n, n);
  groupClusters(edgePoints, edgePointCount, clusterTable, clusterCount, cellGrid.cellSize);
  WriteClusters(clusterTable, clusterCount, cellGrid.cellSize);
}

int BuildWritingRasters(const MaskPattern& source, MaskPattern& coarse, MaskPattern& fine) {
  station.doneCells = 0;
  const int s = std::max(cellGrid.cellSize, 1);
  const int n = kPatternSide / s;
  const int centreFirst = n / 2 - kCoarseCentreHalfCells / s;
  const int centreEnd = n / 2 + kCoarseCentreHalfCells / s;
  const int threshold = s * s / 2;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < n; ++i) {
      int32_t value = kBrightCell;  // the centre is left to the fine pass
      if (!(i >= centreFirst && i < centreEnd && j >= centreFirst && j < centreEnd)) {
        int bright = 0;
        for (int b = 0; b < s; ++b) {
          for (int a = 0; a < s; ++a) {
            if (getCell(source, i * s + a, j * s + b) != 0) ++bright;
          }
        }
        value = bright >= threshold ? kBrightCell : kDarkCell;
      }
      coarse.cells[static_cast<size_t>(j) * n + i] = value;
    }
  }
  for (int y = 0; y < kPatternSide; ++y) {
    for (int x = 0; x < kPatternSide; ++x) {
      const bool centre = x >= kFineCentreFirst && x < kFineCentreEnd && y >= kFineCentreFirst &&
                          y < kFineCentreEnd;
      fine.cells[static_cast<size_t>(y) * kPatternSide + x] =
          centre ? getCell(source, x, y) : kBrightCell;
    }
  }
  return n;
}

void WriteClusters(Cluster* clusters, int count, int factor) {
  // Writing order is the cluster index order; a cluster is to be written while it has
  // points. The stop flag is left as it is: a stop given before stays a stop.
  showProgress("Writing ...");
  writingActive = 1;
  for (int c = 0; c < count; ++c) {
    if (clusters[c].count <= 0) continue;
    WriteCluster(clusters[c], factor);
    showStagePosition();
    showTimeEstimate(cellGrid.cellSize);
    waitResponsive(kClusterPauseMs);
    if (stopRequested()) return;
  }
}

void WriteCluster(const Cluster& cluster, int factor) {
  const ClusterBox box = boxOf(cluster);
  loadWorkingRaster(cluster, box);
  const int speed = factor > 1 ? station.outsideSpeed : station.insideSpeed;
  const double volts = factor == 1 ? station.insideVoltage : station.outsideVoltage;
  const int w = box.right - box.left;
  const int h = box.high - box.low;
  // Strokes run along the longer side; the row and column scans test the marks
  // differently, as the station always has.
  const bool alongRows = w >= h;
  const int lines = alongRows ? h : w;
  const int length = alongRows ? w : h;
  for (int pass = 0; pass < kClusterPasses; ++pass) {
    for (int line = 0; line <= lines; ++line) {
      auto markAt = [&](int offset) {
        return alongRows ? workCell(box.left + offset, box.low + line)
                         : workCell(box.left + line, box.low + offset);
      };
      int start = 0;
      int end = 0;
      for (int k = 0; k <= length; ++k) {
        if (alongRows ? rowStartMark(markAt(k)) : columnStartMark(markAt(k))) {
          start = k;
          break;
        }
      }
      for (int k = 0; k <= length; ++k) {
        if (alongRows ? rowEndMark(markAt(k)) : columnEndMark(markAt(k))) {
          end = k;
          break;
        }
      }
      if (end == 0) continue;  // no end mark, or an end at the first cell
      writeStroke(box, alongRows, line, start, end, line, factor, speed, volts);
      showWritingProgress();
      showStagePosition();
      if (stopRequested()) {
        SetLaserVoltage(laser, 0.0);
        return;
      }
    }
    SetLaserVoltage(laser, 0.0);
    if (!cellsLeftInside(box)) break;
  }
  SetLaserVoltage(laser, 0.0);
}

void MarkWritten(int column, int row, int factor) {
  const IntRect area = station.writingAreaRect;
  Canvas* window = canvasOnWindow(SurfaceWindow::Main);
  for (int b = 0; b < factor; ++b) {
    for (int a = 0; a < factor; ++a) {
      const int x = column * factor + a;
      const int y = row * factor + b;
      const int index = x + kPatternSide * y;
      if (index < 0 || index >= kPatternSide * kPatternSide) continue;
      finalPattern.cells[index] = kDarkCell;
      canvasSetPixel(window, x + area.left, kDisplayHeight - (y + area.top), kWrittenGreen);
    }
  }
  canvasFree(window);
  workCell(column, row) = 0;
  station.doneCells += factor * factor;
}
