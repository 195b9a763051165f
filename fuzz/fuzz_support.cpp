#include "fuzz/fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>

#include "jobs/writing_condition.h"
#include "link/serial_link.h"
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
