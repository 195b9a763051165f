// telvane-forecast: how long a writing run will take, before it is run. Runs the job on
// the virtual station as fast as the processor allows and prints the forecast.
//
//   telvane-forecast [--settings Config.txt] [--mask PICTURE] [--lines LINEFILE] OUTPUT_FOLDER
//
// Exit status 0 with the forecast on standard output; 2 on wrong arguments or unreadable
// files, with the reason on standard error.
#include <cstdio>
#include <cstring>
#include <string>

#ifdef _WIN32
#include <io.h>
#define dup _dup
#define dup2 _dup2
constexpr const char* kNullDevice = "NUL";
#else
#include <unistd.h>
constexpr const char* kNullDevice = "/dev/null";
#endif

#include "sim/forecast.h"

namespace {

// The link traces every command on standard output, as the program does where nobody
// reads it; the forecast keeps standard output for its report.
Forecast forecastQuietly(const ForecastJob& job) {
  std::fflush(stdout);
  const int kept = dup(1);
  if (std::FILE* quiet = std::freopen(kNullDevice, "w", stdout); quiet == nullptr) return {};
  const Forecast forecast = forecastWritingRun(job);
  std::fflush(stdout);
  dup2(kept, 1);
  return forecast;
}

}  // namespace

int main(int argc, char** argv) {
  ForecastJob job;
  for (int i = 1; i < argc; ++i) {
    const bool hasValue = i + 1 < argc;
    if (std::strcmp(argv[i], "--settings") == 0 && hasValue)
      job.settingsFile = argv[++i];
    else if (std::strcmp(argv[i], "--mask") == 0 && hasValue)
      job.maskFile = argv[++i];
    else if (std::strcmp(argv[i], "--lines") == 0 && hasValue)
      job.lineFile = argv[++i];
    else if (argv[i][0] != '-' && job.outputFolder.empty())
      job.outputFolder = argv[i];
    else
      job.outputFolder.clear(), i = argc;
  }
  if (job.outputFolder.empty()) {
    std::fputs(
        "usage: telvane-forecast [--settings Config.txt] [--mask PICTURE] [--lines LINEFILE] "
        "OUTPUT_FOLDER\n",
        stderr);
    return 2;
  }
  const Forecast forecast = forecastQuietly(job);
  const std::string report = forecastReport(forecast);
  std::fputs(report.c_str(), forecast.error.empty() ? stdout : stderr);
  std::fflush(stdout);
  return forecast.error.empty() ? 0 : 2;
}
