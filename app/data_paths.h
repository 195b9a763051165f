// The data folder and the per-run output folder. Placeholder until the foundation lands.
#pragma once

#include <filesystem>

struct DataPaths {
  std::filesystem::path runFolder;
};

extern DataPaths dataPaths;

// Creates the run folder on first use and sets runFolder.
void ensureRunFolder(DataPaths& paths, int forceNew);
