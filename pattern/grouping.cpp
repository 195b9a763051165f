// Grouping: see grouping.h.
//
// How the plain algorithm's result is found without its quadratic search. Every point
// placed in a cluster is entered in a hash table of positions; a point's owner is the
// cluster holding it (-1 once lost in a merge). The 13 positions within distance 2 of a
// point are then the only places a touching point can be. The pairs of touching points
// found while assigning are kept as a list per point for the merge passes.
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

#include "camera/display_surface.h"
#include "pattern/pattern_stores.h"
#include "station/station.h"
#include "station/status_display.h"

namespace {

constexpr int kMaxPoints = kEdgePointCapacity;
constexpr int kHashBits = 15;
constexpr uint32_t kHashSlots = 1u << kHashBits;  // over three times the most positions
constexpr int kNone = -1;
// Pairs of touching points kept for the merge passes: twelve other positions around a
// point, so this holds every pair unless many points share positions; past it the
// passes look the positions up again.
constexpr int kMaxPairs = 8 * kMaxPoints;
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
  int32_t candidates[kClusterCapacity];  // the marked clusters not yet scanned, a min-heap
  int candidateCount = 0;
  bool alive[kClusterCapacity];  // the cluster has points
  // The touching pairs found by the assignment, then as lists per point (CSR).
  int32_t pairFirst[kMaxPairs];
  int32_t pairSecond[kMaxPairs];
  int pairCount = 0;
  bool pairsComplete = true;
  int32_t found[kMaxPoints];  // the points touching the point being assigned
  int foundCount = 0;
  int32_t neighbourStart[kMaxPoints + 1];
  int32_t neighbours[2 * kMaxPairs];
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

// The smallest cluster owning a point that touches p, or kNone; the touching points are
// left in tables.found.
int firstTouchingCluster(EdgePoint p) {
  int first = kNone;
  tables.foundCount = 0;
  for (int k = 0; k < 13; ++k) {
    for (int32_t id = firstPointAt(p.x + kNearDx[k], p.y + kNearDy[k]); id != kNone;
         id = tables.nextAtPosition[id]) {
      const int owner = tables.owner[id];
      if (owner != kNone && (first == kNone || owner < first)) first = owner;
      if (tables.foundCount < kMaxPoints) tables.found[tables.foundCount++] = id;
    }
  }
  return first;
}

// The entered point id touches the points just found: keep the pairs.
void keepPairs(int32_t id) {
  if (tables.pairCount + tables.foundCount > kMaxPairs) {
    tables.pairsComplete = false;
    return;
  }
  for (int k = 0; k < tables.foundCount; ++k) {
    tables.pairFirst[tables.pairCount] = id;
    tables.pairSecond[tables.pairCount] = tables.found[k];
    ++tables.pairCount;
  }
}

// Every entered point's touching points, as one list a point.
void buildNeighbourLists(int pointCount) {
  std::fill_n(tables.neighbourStart, pointCount + 1, 0);
  for (int k = 0; k < tables.pairCount; ++k) {
    ++tables.neighbourStart[tables.pairFirst[k] + 1];
    ++tables.neighbourStart[tables.pairSecond[k] + 1];
  }
  for (int id = 0; id < pointCount; ++id)
    tables.neighbourStart[id + 1] += tables.neighbourStart[id];
  // found[] is free again: it serves as the fill position of each list.
  for (int id = 0; id < pointCount; ++id) tables.found[id] = tables.neighbourStart[id];
  for (int k = 0; k < tables.pairCount; ++k) {
    tables.neighbours[tables.found[tables.pairFirst[k]]++] = tables.pairSecond[k];
    tables.neighbours[tables.found[tables.pairSecond[k]]++] = tables.pairFirst[k];
  }
}

void pushCandidate(int32_t cluster) {
  int at = tables.candidateCount++;
  while (at > 0 && tables.candidates[(at - 1) / 2] > cluster) {
    tables.candidates[at] = tables.candidates[(at - 1) / 2];
    at = (at - 1) / 2;
  }
  tables.candidates[at] = cluster;
}

int32_t popCandidate() {
  const int32_t first = tables.candidates[0];
  const int32_t last = tables.candidates[--tables.candidateCount];
  int at = 0;
  for (;;) {
    int child = 2 * at + 1;
    if (child >= tables.candidateCount) break;
    if (child + 1 < tables.candidateCount &&
        tables.candidates[child + 1] < tables.candidates[child])
      ++child;
    if (tables.candidates[child] >= last) break;
    tables.candidates[at] = tables.candidates[child];
    at = child;
  }
  tables.candidates[at] = last;
  return first;
}

inline void markOwner(int32_t id, int after) {
  const int owner = tables.owner[id];
  if (owner > after && tables.markedFor[owner] != tables.markRound) {
    tables.markedFor[owner] = tables.markRound;
    pushCandidate(owner);
  }
}

// Marks, for the current round, every cluster after `after` that owns a point touching
// point id; each is taken once into the candidates, which are scanned in index order.
void markTouching(int32_t id, int after) {
  if (tables.pairsComplete) {
    for (int k = tables.neighbourStart[id]; k < tables.neighbourStart[id + 1]; ++k) {
      markOwner(tables.neighbours[k], after);
    }
    return;
  }
  const EdgePoint p = tables.position[id];
  for (int k = 0; k < 13; ++k) {
    for (int32_t near = firstPointAt(p.x + kNearDx[k], p.y + kNearDy[k]); near != kNone;
         near = tables.nextAtPosition[near]) {
      markOwner(near, after);
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
    markTouching(id, j);
    id = next;
  }
  for (; id != kNone; id = tables.nextMember[id]) tables.owner[id] = kNone;  // lost
  tables.firstMember[j] = tables.lastMember[j] = kNone;
  tables.alive[j] = false;
}

// The plain inner loop over j > i, taking only the clusters marked as touching i: the
// candidates come out in index order, and every mark made while merging is after the
// cluster just merged, so the order is the plain loop's.
void mergePass(Cluster* clusters, int used) {
  int aliveAfter = 0;  // clusters with points after the current i
  for (int c = 0; c < used; ++c) aliveAfter += tables.alive[c] ? 1 : 0;
  for (int i = 0; i < used && aliveAfter > 0; ++i) {
    if (!tables.alive[i]) continue;
    --aliveAfter;
    if (aliveAfter == 0) break;  // nothing after i is left to merge
    ++tables.markRound;
    tables.candidateCount = 0;
    for (int32_t id = tables.firstMember[i]; id != kNone; id = tables.nextMember[id]) {
      markTouching(id, i);
    }
    while (tables.candidateCount > 0) {
      const int32_t j = popCandidate();
      if (tables.alive[j]) {
        mergeInto(clusters, i, j);
        --aliveAfter;
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
    tables.alive[c] = false;
  }
  tables.markRound = 0;
  if (++tables.generation == 0) {
    for (PositionSlot& slot : tables.slots) slot.generation = 0;
    tables.generation = 1;
  }
  pointCount = std::clamp(pointCount, 0, kMaxPoints);
  tables.pairCount = 0;
  tables.pairsComplete = true;

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
        keepPairs(id);
      }
      continue;
    }
    if (result.used >= kMaxGrain) {
      result.stopped = true;
      break;
    }
    clusters[result.used].points[0] = p;
    clusters[result.used].count = 1;
    tables.alive[result.used] = true;
    appendMember(result.used, id);
    enterPosition(id);
    ++result.used;
  }
  // With one cluster or none there is nothing to merge and no list is needed.
  if (tables.pairsComplete && result.used > 1) buildNeighbourLists(pointCount);
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
    canvasRectangle(
        window,
        {c.leftmost.x * scale + area.left, kPatternSide - c.topmost.y * scale + area.top,
         c.rightmost.x * scale + area.left, kPatternSide - c.bottommost.y * scale + area.top},
        kClusterPen, nullptr);
    ++drawn;
  }
  canvasFree(window);
  char text[64];
  std::snprintf(text, sizeof text, "%d clusters found", drawn);
  showStatus(text);
  clusterCountOut = formed.used;
}
