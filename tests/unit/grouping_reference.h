// The grouping algorithm of the pattern Part transcribed as plainly as it is written,
// quadratic search and all: the reference that formClusters must match exactly (clusters,
// point order, counts, the stop) and that the benchmark measures it against.
#pragma once

#include <cstdlib>

#include "pattern/cluster_table.h"
#include "pattern/grouping.h"

inline bool referenceTouch(EdgePoint a, EdgePoint b) {
  return std::abs(a.x - b.x) + std::abs(a.y - b.y) < 3;
}

inline void referenceMergeIfTouching(Cluster& a, Cluster& b) {
  bool found = false;
  for (int i = 0; i < a.count && !found; ++i) {
    for (int j = 0; j < b.count && !found; ++j) {
      if (referenceTouch(a.points[i], b.points[j])) found = true;
    }
  }
  if (!found) return;
  int appended = 0;
  while (appended < b.count && a.count + appended < 10000) {
    a.points[a.count + appended] = b.points[appended];
    ++appended;
  }
  a.count += appended;
  b.count = 0;
}

inline ClusterFormation referenceFormClusters(const EdgePoint* points, int pointCount,
                                              Cluster* clusters) {
  for (int c = 0; c < 1000; ++c) clusters[c].count = 0;
  int used = 0;
  bool stopped = false;
  for (int p = 0; p < pointCount; ++p) {
    bool hit = false;
    for (int c = 0; c < used && !hit; ++c) {
      for (int q = 0; q < clusters[c].count; ++q) {
        if (referenceTouch(clusters[c].points[q], points[p])) {
          if (clusters[c].count < 9999) {
            clusters[c].points[clusters[c].count] = points[p];
            clusters[c].count++;
          }
          hit = true;
          break;
        }
      }
    }
    if (hit) continue;
    if (used >= 997) {
      stopped = true;
      break;
    }
    clusters[used].points[0] = points[p];
    clusters[used].count = 1;
    used++;
  }
  for (int pass = 0; pass < 2; ++pass) {
    for (int i = 0; i < used; ++i) {
      for (int j = i + 1; j < used; ++j) {
        if (clusters[i].count != 0 && clusters[j].count != 0) {
          referenceMergeIfTouching(clusters[i], clusters[j]);
        }
      }
    }
  }
  return {used, stopped};
}

inline void referenceClusterBounds(Cluster* clusters, int n) {
  for (int i = 0; i < n; ++i) {
    Cluster& c = clusters[i];
    c.leftmost = c.topmost = c.rightmost = c.bottommost = c.points[0];
    for (int j = 0; j < c.count; ++j) {
      if (c.points[j].x < c.leftmost.x) c.leftmost = c.points[j];
      if (c.points[j].x > c.rightmost.x) c.rightmost = c.points[j];
      if (c.points[j].y < c.topmost.y) c.topmost = c.points[j];
      if (c.points[j].y > c.bottommost.y) c.bottommost = c.points[j];
    }
  }
}
