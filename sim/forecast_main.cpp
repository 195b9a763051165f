// telvane-forecast: how long a writing run will take, before it is run. Runs the job on
// the virtual station as fast as the processor allows and prints the forecast.
//
//   telvane-forecast [--settings Config.txt] [--mask PICTURE] [--lines LINEFILE]
//                    [--host windows|wine|exact] [--window-dc-us N] [--pixel-us N]
//                    OUTPUT_FOLDER
//
// --host: whose timer the program runs on. Windows (the default) wakes a sleep and moves
// the tick count on its 15.625 ms clock interrupt; Wine sleeps to the millisecond but moves
// the tick count only when the program calls into the Wine server; exact is the tests'
// clock. The program's 10 ms pauses last about 15.6, 20 and 10 ms on them.
// --window-dc-us, --pixel-us: what taking a window's device context and setting one pixel
// on it cost the program on the operator's PC, which the main window measures.
//
// Exit status 0 with the forecast on standard output; 2 on wrong arguments or unreadable
// files, with the reason on standard error.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
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

bool hostTimerNamed(const char* name, HostTimer& host) {
  if (std::strcmp(name, "windows") == 0)
    host = HostTimer::WindowsTick;
  else if (std::strcmp(name, "wine") == 0)
    host = HostTimer::WineServerTick;
  else if (std::strcmp(name, "exact") == 0)
    host = HostTimer::Exact;
  else
    return false;
  return true;
}

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
    else if (std::strcmp(argv[i], "--host") == 0 && hasValue &&
             hostTimerNamed(argv[i + 1], job.host))
      ++i;
    else if (std::strcmp(argv[i], "--window-dc-us") == 0 && hasValue)
      job.windowDcUs = std::max(0.0, std::atof(argv[++i]));
    else if (std::strcmp(argv[i], "--pixel-us") == 0 && hasValue)
      job.pixelUs = std::max(0.0, std::atof(argv[++i]));
    else if (argv[i][0] != '-' && job.outputFolder.empty())
      job.outputFolder = argv[i];
    else
      job.outputFolder.clear(), i = argc;
  }
  if (job.outputFolder.empty()) {
    std::fputs(
        "usage: telvane-forecast [--settings Config.txt] [--mask PICTURE] [--lines LINEFILE] "
        "[--host windows|wine|exact] [--window-dc-us N] [--pixel-us N] OUTPUT_FOLDER\n",
        stderr);
    return 2;
  }
  const Forecast forecast = forecastQuietly(job);
  const std::string report = forecastReport(forecast);
  std::fputs(report.c_str(), forecast.error.empty() ? stdout : stderr);
  std::fflush(stdout);
  return forecast.error.empty() ? 0 : 2;
}
