#include "station/data_paths.h"

#include <cstdio>
#include <system_error>

#include "station/station.h"
#include "station/system_services.h"

namespace {
// The name before any run folder was formatted.
std::string runName = "230101";

// A folder that already exists, or cannot be made, is left to the file opens that
// follow: they fail and report there.
void createFolder(const std::filesystem::path& folder) {
  std::error_code ignored;
  std::filesystem::create_directory(folder, ignored);
}
}  // namespace

DataPaths::DataPaths()
    : desktopFolder(systemDesktopFolder()),
      dataFolder(desktopFolder / "Orvalin_Data"),
      configPath(dataFolder / "Config.txt"),
      cellMarks(static_cast<size_t>(station.cellsX),
                std::vector<int32_t>(static_cast<size_t>(station.cellsY), 0)) {
  createFolder(dataFolder);
}

void ensureRunFolder(DataPaths& paths, int forceNew) {
  if (forceNew != 0 || paths.runFolderCreated == 0) {
    const LocalTime now = systemLocalTime();
    char name[64];
    std::snprintf(name, sizeof name, "%02d%02d%02d_%02d-%02d", now.year - 2000, now.month, now.day,
                  now.hour, now.minute);
    runName = name;
  }
  paths.runFolder = paths.dataFolder / runName;
  createFolder(paths.runFolder);
  paths.runFolderCreated = 1;
}
