// The cluster table: 1000 clusters of up to 10,000 edge points each, one zero-filled
// block of 40,020,000 bytes allocated at start-up and freed at shutdown. Grouping fills
// it and raster writing reads it; this module only owns the records and the block.
#pragma once

#include <cstddef>
#include <cstdint>

// A cell position packed into 32 bits: x in the low half, y in the high half.
struct EdgePoint {
  int16_t x;
  int16_t y;
};

constexpr int kClusterPointCapacity = 10000;
constexpr int kClusterCapacity = 1000;

struct Cluster {
  EdgePoint points[kClusterPointCapacity];
  int32_t count;
  EdgePoint leftmost;  // the member with the smallest x
  EdgePoint topmost;   // smallest y
  EdgePoint rightmost;
  EdgePoint bottommost;
};

static_assert(sizeof(EdgePoint) == 4);
static_assert(sizeof(Cluster) == 40020);
constexpr size_t kClusterTableBytes = sizeof(Cluster) * kClusterCapacity;  // 40,020,000

extern Cluster* clusterTable;  // null when not allocated
extern int32_t clusterCount;   // slots used by the last grouping

// Allocates the zero-filled table (zero-fills it when it is there already); leaves
// clusterTable null when memory is short.
void allocateClusterTable();
void freeClusterTable();
