#include "pattern/cluster_table.h"

#include <cstdlib>

Cluster* clusterTable = nullptr;
int32_t clusterCount = 0;

void allocateClusterTable() {
  clusterTable = static_cast<Cluster*>(std::calloc(kClusterCapacity, sizeof(Cluster)));
}

void freeClusterTable() {
  std::free(clusterTable);
  clusterTable = nullptr;
}
