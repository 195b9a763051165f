// Grouping: see grouping.h.
//
// How the plain algorithm's result is found without its quadratic search. Every point
// placed in a cluster is entered in a hash table of positions; a point's owner is the
// cluster holding it (-1 once lost in a merge). The 13 positions within distance 2 of a
// point are then the only places a touching point can be.
// - Assignment: the first touching cluster in cluster order is the smallest owner found
//   around the point (clusters are searched from 0, and which point of the cluster
//   touches does not matter).
// - A merge pass for cluster i: the clusters touching i are those owning a point around
//   one of i's points. They are marked from i's points at the start, and from each point
//   i gains by a merge, marking only clusters after the one just merged (the earlier ones
//   were passed, as in the plain inner loop). Marks stay true while the scan moves on,
//   since only i gains points and only the merged cluster loses them.
// All tables are static: grouping allocates nothing.
#include "pattern/grouping.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "app/station.h"
#include "app/status_display.h"
#include "camera/display_surface.h"
#include "pattern/pattern_stores.h"

namespace {

constexpr int kMaxPoints = kEdgePointCapacity;
constexpr int kHashBits = 15;
constexpr uint32_t kHashSlots = 1u << kHashBits;  // over three times the most positions
constexpr int kNone = -1;
const Rgb kClusterPen{100, 100, 100};  // 0x646464

// The 13 offsets within city-block distance 2.
constexpr int kNearDx[13] = {0, -1, 0, 1, -2, -1, 0, 1, 2, -1, 0, 1, 0};
constexpr int kNearDy[13] = {-2, -1, -1, -1, 0, 0, 0, 0, 0, 1, 1, 1, 2};

struct PositionSlot {
  uint32_t key;
  uint32_t generation;  // the slot is in use when it equals the current generation
  int32_t first;        // first point at the position
};

struct Tables {
  PositionSlot slots[kHashSlots];
  uint32_t generation = 0;
  EdgePoint position[kMaxPoints];
  int32_t nextAtPosition[kMaxPoints];
  int32_t owner[kMaxPoints];
  int32_t nextMember[kMaxPoints];  // members of a cluster in its point order
  int32_t firstMember[kClusterCapacity];
  int32_t lastMember[kClusterCapacity];
  uint32_t markedFor[kClusterCapacity];  // equals markRound when marked for the current i
  uint32_t markRound = 0;
};

Tables tables;

inline uint32_t keyOf(int x, int y) {
  return static_cast<uint32_t>(static_cast<uint16_t>(x)) |
         (static_cast<uint32_t>(static_cast<uint16_t>(y)) << 16);
}

inline uint32_t slotOf(uint32_t key) { return (key * 0x9E3779B1u) >> (32 - kHashBits); }

// The slot holding key, or the empty slot where it would go.
inline PositionSlot& findSlot(uint32_t key) {
  uint32_t at = slotOf(key);
  for (;;) {
    PositionSlot& slot = tables.slots[at];
    if (slot.generation != tables.generation || slot.key == key) return slot;
    at = (at + 1) & (kHashSlots - 1);
  }
}

inline int32_t firstPointAt(int x, int y) {
  if (x < INT16_MIN || x > INT16_MAX || y < INT16_MIN || y > INT16_MAX) return kNone;
  const PositionSlot& slot = findSlot(keyOf(x, y));
  return slot.generation == tables.generation ? slot.first : kNone;
}

void enterPosition(int32_t id) {
  const EdgePoint p = tables.position[id];
  PositionSlot& slot = findSlot(keyOf(p.x, p.y));
  if (slot.generation != tables.generation) {
    slot = {keyOf(p.x, p.y), tables.generation, kNone};
  }
  tables.nextAtPosition[id] = slot.first;
  slot.first = id;
}

void appendMember(int cluster, int32_t id) {
  tables.owner[id] = cluster;
  tables.nextMember[id] = kNone;
  if (tables.lastMember[cluster] == kNone) {
    tables.firstMember[cluster] = id;
  } else {
    tables.nextMember[tables.lastMember[cluster]] = id;
  }
  tables.lastMember[cluster] = id;
}

// The smallest cluster owning a point that touches p, or kNone.
int firstTouchingCluster(EdgePoint p) {
  int found = kNone;
  for (int k = 0; k < 13; ++k) {
    for (int32_t id = firstPointAt(p.x + kNearDx[k], p.y + kNearDy[k]); id != kNone;
         id = tables.nextAtPosition[id]) {
      const int owner = tables.owner[id];
      if (owner != kNone && (found == kNone || owner < found)) found = owner;
    }
  }
  return found;
}

// Marks, for the current round, every cluster after `after` that owns a point touching p.
void markTouching(EdgePoint p, int after) {
  for (int k = 0; k < 13; ++k) {
    for (int32_t id = firstPointAt(p.x + kNearDx[k], p.y + kNearDy[k]); id != kNone;
         id = tables.nextAtPosition[id]) {
      const int owner = tables.owner[id];
      if (owner > after) tables.markedFor[owner] = tables.markRound;
    }
  }
}

// Cluster j into cluster i, as mergeIfTouching does once a touching pair is known; the
// points i gains mark the clusters after j that they touch.
void mergeInto(Cluster* clusters, int i, int j) {
  Cluster& a = clusters[i];
  Cluster& b = clusters[j];
  const int room = a.count < kClusterMergeLimit ? kClusterMergeLimit - a.count : 0;
  const int appended = std::min(b.count, room);
  std::memcpy(&a.points[a.count], b.points, sizeof(EdgePoint) * static_cast<size_t>(appended));
  a.count += appended;
  b.count = 0;
  int32_t id = tables.firstMember[j];
  for (int k = 0; k < appended; ++k) {
    const int32_t next = tables.nextMember[id];
    appendMember(i, id);
    markTouching(tables.position[id], j);
    id = next;
  }
  for (; id != kNone; id = tables.nextMember[id]) tables.owner[id] = kNone;  // lost
  tables.firstMember[j] = tables.lastMember[j] = kNone;
}

void mergePass(Cluster* clusters, int used) {
  for (int i = 0; i < used; ++i) {
    if (clusters[i].count == 0) continue;
    ++tables.markRound;
    for (int32_t id = tables.firstMember[i]; id != kNone; id = tables.nextMember[id]) {
      markTouching(tables.position[id], i);
    }
    for (int j = i + 1; j < used; ++j) {
      if (tables.markedFor[j] == tables.markRound && clusters[j].count != 0) {
        mergeInto(clusters, i, j);
      }
    }
  }
}

}  // namespace

ClusterFormation formClusters(const EdgePoint* points, int pointCount, Cluster* clusters) {
  for (int c = 0; c < kClusterCapacity; ++c) {
    clusters[c].count = 0;
    tables.firstMember[c] = tables.lastMember[c] = kNone;
    tables.markedFor[c] = 0;
  }
  tables.markRound = 0;
  if (++tables.generation == 0) {
    for (PositionSlot& slot : tables.slots) slot.generation = 0;
    tables.generation = 1;
  }
  pointCount = std::clamp(pointCount, 0, kMaxPoints);

  ClusterFormation result{0, false};
  for (int32_t id = 0; id < pointCount; ++id) {
    const EdgePoint p = points[id];
    tables.position[id] = p;
    tables.owner[id] = kNone;
    const int hit = firstTouchingCluster(p);
    if (hit != kNone) {
      Cluster& cluster = clusters[hit];
      if (cluster.count < kClusterJoinLimit) {
        cluster.points[cluster.count++] = p;
        appendMember(hit, id);
        enterPosition(id);
      }
      continue;
    }
    if (result.used >= kMaxGrain) {
      result.stopped = true;
      break;
    }
    clusters[result.used].points[0] = p;
    clusters[result.used].count = 1;
    appendMember(result.used, id);
    enterPosition(id);
    ++result.used;
  }
  for (int pass = 0; pass < kMergePasses; ++pass) mergePass(clusters, result.used);
  return result;
}

void mergeIfTouching(Cluster& a, Cluster& b) {
  bool touching = false;
  for (int i = 0; i < a.count && !touching; ++i) {
    for (int j = 0; j < b.count; ++j) {
      if (pointsTouch(a.points[i], b.points[j])) {
        touching = true;
        break;
      }
    }
  }
  if (!touching) return;
  int appended = 0;
  while (appended < b.count && a.count + appended < kClusterMergeLimit) {
    a.points[a.count + appended] = b.points[appended];
    ++appended;
  }
  a.count += appended;
  b.count = 0;
}

void clusterBounds(Cluster* clusters, int n) {
  for (int i = 0; i < n; ++i) {
    Cluster& c = clusters[i];
    c.leftmost = c.topmost = c.rightmost = c.bottommost = c.points[0];
    for (int j = 0; j < c.count; ++j) {
      const EdgePoint p = c.points[j];
      if (p.x < c.leftmost.x) c.leftmost = p;
      if (p.x > c.rightmost.x) c.rightmost = p;
      if (p.y < c.topmost.y) c.topmost = p;
      if (p.y > c.bottommost.y) c.bottommost = p;
    }
  }
}

void groupClusters(const EdgePoint* points, int pointCount, Cluster* clusters,
                   int32_t& clusterCountOut, int scale) {
  const ClusterFormation formed = formClusters(points, pointCount, clusters);
  if (formed.stopped) showStatus("MAX_GRAIN overflow: group counting stopped");
  clusterBounds(clusters, formed.used);

  const IntRect area = station.writingAreaRect;
  Canvas* window = canvasOnWindow(SurfaceWindow::Main);
  int drawn = 0;
  for (int i = 0; i < formed.used; ++i) {
    const Cluster& c = clusters[i];
    if (c.count == 0) continue;
    // Cell row 0 is the bottom of the writing area.
    canvasRectangle(window,
                    {c.leftmost.x * scale + area.left, kPatternSide - c.topmost.y * scale + area.top,
                     c.rightmost.x * scale + area.left,
                     kPatternSide - c.bottommost.y * scale + area.top},
                    kClusterPen, nullptr);
    ++drawn;
  }
  canvasFree(window);
  char text[64];
  std::snprintf(text, sizeof text, "%d clusters found", drawn);
  showStatus(text);
  clusterCountOut = formed.used;
}
