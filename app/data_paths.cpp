// Placeholder until the foundation lands: the run folder is the desktop's data folder.
#include "app/data_paths.h"

#include "app/system_services.h"

DataPaths dataPaths;

void ensureRunFolder(DataPaths& paths, int) {
  paths.runFolder = systemDesktopFolder() / "Orvalin_Data" / "230101";
  std::error_code ignored;
  std::filesystem::create_directories(paths.runFolder, ignored);
}
