// Speed of pattern preparation:
// - findEdges on a 1000 x 1000 mask beside one plain pass that reads every cell of the
//   grid and writes every entry of the edge-code table (as many codes as findEdges
//   writes, its clearing included), in the same run; goal: at most 3 x that pass;
// - groupClusters on 10,000 points (one long outline, many small clusters, the
//   adversarial set) beside the plain transcription of the algorithm; goal: at most
//   10 ms and at least 50 x faster than the transcription;
// - the whole preparation of a raster run on a 1000 x 1000 mask: rasters, then edges and
//   grouping of the fine and the coarse raster.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>

#include "jobs/raster_writing.h"
#include "pattern/edge_finding.h"
#include "pattern/grouping.h"
#include "pattern/pattern_stores.h"
#include "sim/recorded_display.h"
#include "sim/recorded_feedback.h"
#include "tests/unit/grouping_reference.h"
#include "tests/unit/point_sets.h"

namespace {

// A mask of 70 random dark rectangles (up to 60 cells a side), under 10,000 edge cells, so
// that edge finding examines the whole grid.
void makeMask(MaskPattern& grid) {
  std::fill_n(grid.cells, kPatternSide * kPatternSide, kBrightCell);
  std::mt19937 random(11);
  std::uniform_int_distribution<int> corner(0, 940);
  std::uniform_int_distribution<int> side(5, 60);
  for (int r = 0; r < 70; ++r) {
    const int x0 = corner(random), y0 = corner(random), w = side(random), h = side(random);
    for (int y = y0; y < y0 + h; ++y) {
      for (int x = x0; x < x0 + w; ++x) grid.cells[y * kPatternSide + x] = kDarkCell;
    }
  }
}

void forgetRecords() {
  recordedFeedbackReset();
  recordedDisplayReset();
}

void BM_PlainGridPass(benchmark::State& state) {
  makeMask(targetPattern);
  for (auto _ : state) {
    int64_t sum = 0;
    for (int i = 0; i < kPatternSide * kPatternSide; ++i) sum += targetPattern.cells[i];
    const int32_t code = static_cast<int32_t>(sum & 1);
    for (int x = 0; x < kPatternSide; ++x) {
      int32_t* column = cellGrid.edgeCodes[x];
      for (int y = 0; y < kPatternSide; ++y) column[y] = code;
    }
    benchmark::DoNotOptimize(cellGrid.edgeCodes[999][999]);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_PlainGridPass)->Unit(benchmark::kMicrosecond);

void BM_FindEdges(benchmark::State& state) {
  makeMask(targetPattern);
  for (auto _ : state) {
    findEdges(targetPattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, kPatternSide,
              kPatternSide);
    benchmark::ClobberMemory();
    state.PauseTiming();
    forgetRecords();
    state.ResumeTiming();
  }
  state.counters["points"] = edgePointCount;
}
BENCHMARK(BM_FindEdges)->Unit(benchmark::kMicrosecond);

PointSet pointSet(int kind) {
  switch (kind) {
    case 0: return longOutline(10000);
    case 1: return manySmallClusters(10000);
    default: return adversarialPoints(10000);
  }
}
const char* kSetNames[] = {"long outline", "many small clusters", "adversarial"};

void BM_GroupClusters(benchmark::State& state) {
  const PointSet points = pointSet(static_cast<int>(state.range(0)));
  if (clusterTable == nullptr) allocateClusterTable();
  int32_t used = 0;
  for (auto _ : state) {
    groupClusters(points.data(), static_cast<int>(points.size()), clusterTable, used, 1);
    benchmark::ClobberMemory();
    state.PauseTiming();
    forgetRecords();
    state.ResumeTiming();
  }
  state.SetLabel(kSetNames[state.range(0)]);
  state.counters["slots"] = used;
}
BENCHMARK(BM_GroupClusters)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

// Assignment and merges alone, by the plain transcription or by formClusters.
template <ClusterFormation (*Form)(const EdgePoint*, int, Cluster*)>
void formOnly(benchmark::State& state) {
  const PointSet points = pointSet(static_cast<int>(state.range(0)));
  static std::unique_ptr<Cluster[]> table(new Cluster[kClusterCapacity]());
  ClusterFormation formed{};
  for (auto _ : state) {
    formed = Form(points.data(), static_cast<int>(points.size()), table.get());
    benchmark::ClobberMemory();
  }
  state.SetLabel(kSetNames[state.range(0)]);
  state.counters["slots"] = formed.used;
}

void BM_FormClustersReference(benchmark::State& state) { formOnly<referenceFormClusters>(state); }
BENCHMARK(BM_FormClustersReference)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void BM_FormClusters(benchmark::State& state) { formOnly<formClusters>(state); }
BENCHMARK(BM_FormClusters)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void BM_PrepareRasterRun(benchmark::State& state) {
  makeMask(targetPattern);
  if (clusterTable == nullptr) allocateClusterTable();
  cellGrid.cellSize = 5;
  for (auto _ : state) {
    const int n = BuildWritingRasters(targetPattern, coarsePattern, finePattern);
    findEdges(finePattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, kPatternSide,
              kPatternSide);
    groupClusters(edgePoints, edgePointCount, clusterTable, clusterCount, 1);
    findEdges(coarsePattern.cells, cellGrid.edgeCodes, edgePoints, edgePointCount, n, n);
    groupClusters(edgePoints, edgePointCount, clusterTable, clusterCount, cellGrid.cellSize);
    benchmark::ClobberMemory();
    state.PauseTiming();
    forgetRecords();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_PrepareRasterRun)->Unit(benchmark::kMillisecond);

}  // namespace
