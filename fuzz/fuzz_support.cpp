#include "fuzz/fuzz_support.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>

#include "jobs/writing_condition.h"
#include "link/serial_link.h"
#include "pattern/layout_import.h"
#include "pattern/line_pattern.h"
#include "sim/recorded_display.h"
#include "sim/recorded_feedback.h"
#include "sim/virtual_clock.h"
#include "station/data_paths.h"
#include "station/responsive_wait.h"
#include "station/station.h"

namespace {

std::filesystem::path& desktop() {
  static std::filesystem::path folder;
  return folder;
}

void removeDesktop() {
  std::error_code ignored;
  if (!desktop().empty()) std::filesystem::remove_all(desktop(), ignored);
}

}  // namespace

void fuzzInitialize() {
  std::string pattern = (std::filesystem::temp_directory_path() / "telvane_fuzz_XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    std::perror("mkdtemp");
    std::abort();
  }
  desktop() = pattern;
  std::atexit(removeDesktop);
  virtualClockSetDesktop(desktop());
  if (std::freopen("/dev/null", "w", stdout) == nullptr) std::perror("stdout");
}

void freshStation() {
  virtualClockReset();
  recordedFeedbackReset();
  recordedDisplayReset();
  station = StationParameters();
  laser = LaserOutput();
  serialLink = SerialLink();
  dataPaths = DataPaths();
  writingActive = 0;
  writingConditionCounter = 0;
  linePattern = LinePattern();
}

std::filesystem::path writeInputFile(const char* name, const uint8_t* data, size_t size) {
  const std::filesystem::path path = desktop() / name;
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  return path;
}

void clearRunFolder() {
  std::error_code ignored;
  if (dataPaths.runFolderCreated) std::filesystem::remove_all(dataPaths.runFolder, ignored);
}

void setFuzzLayoutBudgets(LayoutShapes& shapes) {
  shapes.pointBudget = 1'000'000;
  shapes.placementBudget = 1'000'000;
}

void rasterizeFuzzLayout(const LayoutShapes& shapes, uint8_t first, bool& written) {
  double low = 0, high = 0;
  bool any = false;
  for (const LayoutPolygon& polygon : shapes.polygons) {
    for (const LayoutPoint& p : polygon) {
      low = any ? std::min({low, p.x, p.y}) : std::min(p.x, p.y);
      high = any ? std::max({high, p.x, p.y}) : std::max(p.x, p.y);
      any = true;
    }
  }
  const double cellUm = std::max(1.0 + first % 10, (high - low) / 2000);
  LayoutRaster raster;
  std::string message;
  if (rasterizeLayout(shapes.polygons, cellUm, (first & 0x80) != 0, raster, message) && !written)
    written = writeWritingAreaPicture(raster, writeInputFile("layout.bmp", nullptr, 0));
}
