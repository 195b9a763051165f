#include "pattern/cluster_table.h"

#include <cstdlib>
#include <cstring>

Cluster* clusterTable = nullptr;
int32_t clusterCount = 0;

void allocateClusterTable() {
  // A second start-up in one process (the tests) keeps the block, zero-filled again.
  if (clusterTable != nullptr) {
    std::memset(static_cast<void*>(clusterTable), 0, kClusterTableBytes);
    return;
  }
  clusterTable = static_cast<Cluster*>(std::calloc(kClusterCapacity, sizeof(Cluster)));
}

void freeClusterTable() {
  std::free(clusterTable);
  clusterTable = nullptr;
}
