// Point sets for grouping, made the same way by the tests and the benchmarks: random,
// and shapes that make the plain algorithm work hardest.
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "pattern/cluster_table.h"

using PointSet = std::vector<EdgePoint>;

inline EdgePoint pointAt(int x, int y) {
  return {static_cast<int16_t>(x), static_cast<int16_t>(y)};
}

// count points spread evenly over a side x side square; duplicates may occur.
inline PointSet randomPoints(int count, int side, uint32_t seed) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> coordinate(0, side - 1);
  PointSet points;
  for (int i = 0; i < count; ++i) points.push_back(pointAt(coordinate(random), coordinate(random)));
  return points;
}

// Up to 996 small outlines (3 x 4 rectangles, 10 points each) far apart, then points
// that touch only the last one: every late point searches every earlier cluster.
inline PointSet adversarialPoints(int count) {
  PointSet points;
  const int rings = 996;
  for (int r = 0; r < rings && static_cast<int>(points.size()) + 10 <= count; ++r) {
    const int left = (r % 32) * 30;
    const int low = (r / 32) * 30;
    for (int y = low; y < low + 4; ++y) {
      for (int x = left; x < left + 3; ++x) {
        if (y == low || y == low + 3 || x == left || x == left + 2) points.push_back(pointAt(x, y));
      }
    }
  }
  const EdgePoint last = points.back();
  for (int k = 1; static_cast<int>(points.size()) < count; ++k) {
    points.push_back(pointAt(last.x + k, last.y));  // a line growing from the last outline
  }
  return points;
}

// Many separate small outlines (990 of 10 points each), then a line far from them.
inline PointSet manySmallClusters(int count) {
  PointSet points = adversarialPoints(9900);
  points.resize(std::min<size_t>(points.size(), static_cast<size_t>(count)));
  for (int x = 0; static_cast<int>(points.size()) < count; ++x) points.push_back(pointAt(x, 990));
  return points;
}

// One long outline: the boundary of a 2500-point-a-side square ring, in raster order.
inline PointSet longOutline(int count) {
  PointSet points;
  const int side = count / 4 + 1;
  for (int y = 0; y <= side && static_cast<int>(points.size()) < count; ++y) {
    for (int x = 0; x <= side && static_cast<int>(points.size()) < count; ++x) {
      if (y == 0 || y == side || x == 0 || x == side) points.push_back(pointAt(x, y));
    }
  }
  return points;
}
