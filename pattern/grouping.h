// Grouping: edge points gathered into clusters of touching points (city-block distance
// at most 2), one cluster per separate outline, with each cluster's extreme points and
// its bounding rectangle drawn on the main window. Called by "Grouping" on edgePoints and
// by raster writing after each edge finding. The result is exactly that of the plain
// algorithm of the pattern Part (first touching cluster in cluster and point order, the
// caps, two merge passes), found through a table of occupied positions rather than by
// comparing every pair of points.
#pragma once

#include <cstdint>

#include "pattern/cluster_table.h"

constexpr int kMaxGrain = 997;             // no cluster is opened once this many exist
constexpr int kClusterJoinLimit = 9999;    // a point joins a cluster only below this count
constexpr int kClusterMergeLimit = 10000;  // a merge fills a cluster up to this count
constexpr int kMergePasses = 2;

inline bool pointsTouch(EdgePoint a, EdgePoint b) {
  const int dx = a.x - b.x;
  const int dy = a.y - b.y;
  return (dx < 0 ? -dx : dx) + (dy < 0 ? -dy : dy) < 3;
}

struct ClusterFormation {
  int used;      // cluster slots used, emptied ones included
  bool stopped;  // MAX_GRAIN was reached and the rest of the points left ungrouped
};

// Assignment and the two merge passes, without bounds, drawing or messages.
ClusterFormation formClusters(const EdgePoint* points, int pointCount, Cluster* clusters);

// formClusters, then "MAX_GRAIN overflow: group counting stopped" when it stopped, the
// bounds, a grey rectangle per non-empty cluster (cell coordinates times scale, y flipped,
// offset by the writing area), "%d clusters found" with the rectangles drawn; the slots
// used go to clusterCountOut.
void groupClusters(const EdgePoint* points, int pointCount, Cluster* clusters,
                   int32_t& clusterCountOut, int scale);

// If any point of a touches any point of b, b's points are appended to a (up to 10,000
// in a; the rest are lost) and b is emptied.
void mergeIfTouching(Cluster& a, Cluster& b);

// The four extreme points of clusters 0 .. n - 1, the first point winning ties; an empty
// cluster gets its stale points[0].
void clusterBounds(Cluster* clusters, int n);
