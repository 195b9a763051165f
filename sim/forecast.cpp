// The writing-time forecast: see forecast.h.
#include "sim/forecast.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

#include "app/command_dispatch.h"
#include "app/startup.h"
#include "link/serial_link.h"
#include "resources/resource.h"
#include "sim/picture_file.h"
#include "sim/recorded_display.h"
#include "sim/recorded_feedback.h"
#include "sim/virtual_clock.h"
#include "sim/virtual_serial.h"
#include "station/data_paths.h"

namespace {

constexpr int kLaserChannel = kBoardLaserChannel;

LocalTime localTimeNow() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &now);
#else
  localtime_r(&now, &parts);
#endif
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
          parts.tm_hour,        parts.tm_min,     parts.tm_sec};
}

// How much of [from, to] some axis of the board spends moving. The moves under way do not
// change while the clock advances: only a command starts or replaces one.
uint64_t movingWithin(const VirtualBoard& board, uint64_t from, uint64_t to) {
  uint64_t covered = 0, reached = from;
  std::vector<std::pair<uint64_t, uint64_t>> spans;
  for (const BoardAxis& axis : board.axes) {
    if (!axis.moving) continue;
    const auto end = axis.startMs + static_cast<uint64_t>(std::ceil(axis.durationMs));
    spans.emplace_back(std::max(axis.startMs, from), std::min(end, to));
  }
  std::sort(spans.begin(), spans.end());
  for (auto [start, end] : spans) {
    start = std::max(start, reached);
    if (end > start) {
      covered += end - start;
      reached = end;
    }
  }
  return covered;
}

// Attributes each advance of the clock: moving with the laser on or off, or standing
// while the line carries bytes either way, or standing quiet.
class TimeAccount {
 public:
  explicit TimeAccount(Forecast& forecast) : f_(forecast) {}

  void advance(uint64_t from, uint64_t to) {
    const VirtualBoard& board = virtualSerialBoard();
    const bool laserOn = boardPwm(board, kLaserChannel) > 0;
    const uint64_t moving = movingWithin(board, from, to);
    const uint64_t standing = to - from - moving;
    const auto busyEnd = static_cast<uint64_t>(std::ceil(virtualSerialLineBusyUntilMs()));
    const uint64_t serial =
        std::min(standing, busyEnd > from ? std::min(busyEnd, to) - from : uint64_t{0});
    (laserOn ? f_.strokeMs : f_.moveMs) += moving;
    f_.serialMs += serial;
    f_.waitMs += standing - serial;
    if (laserOn) f_.laserOnMs += to - from;
  }

 private:
  Forecast& f_;
};

// The XY moves the board was told to make while the laser channel was up: each move of
// the writing starts with its X command.
int countStrokes(const std::vector<BoardCommandRecord>& commands, size_t first) {
  int strokes = 0, laser = 0;
  for (size_t i = first; i < commands.size(); ++i) {
    const std::string& text = commands[i].text;
    int channel = 0, value = 0;
    if (std::sscanf(text.c_str(), "G %d %d", &channel, &value) == 2 && channel == kLaserChannel)
      laser = value;
    else if (text[0] == 'm' && laser > 0)
      ++strokes;
  }
  return strokes;
}

// The board's commands of the run as telvane-board-sim logs them: the time in ms, the text.
void writeBoardLog(const std::filesystem::path& path,
                   const std::vector<BoardCommandRecord>& commands, size_t first) {
  std::ofstream log(path);
  for (size_t i = first; i < commands.size(); ++i)
    log << commands[i].timeMs << ' ' << commands[i].text << '\n';
}

bool importMask(const std::filesystem::path& file, std::string& error) {
  RecordedPicture picture;
  if (!readPictureFile(file, picture)) {
    error = "cannot read the mask picture " + file.string();
    return false;
  }
  recordedRegisterPicture(file.wstring(), picture);
  recordedQueueFileChoice(file.wstring());
  dispatchCommand(IDM_IMPORT_IMAGE);
  dispatchCommand(IDM_MASK_PATTERN);
  return true;
}

}  // namespace

Forecast forecastWritingRun(const ForecastJob& job) {
  Forecast forecast;
  forecast.host = job.host;
  forecast.windowDcUs = job.windowDcUs;
  forecast.pixelUs = job.pixelUs;
  // The board at rest and the port closed, as when the program starts: nothing in
  // telvane-forecast, but another run in the same process starts afresh too.
  if (serialLink.failed == 0) CloseSerialLink(serialLink);
  serialLink = SerialLink();
  virtualSerialReset();
  recordedFeedbackReset();
  recordedDisplayReset();
  std::error_code ignored;
  std::filesystem::create_directories(job.outputFolder, ignored);
  virtualClockSetDesktop(job.outputFolder);
  virtualClockSetLocalTime(localTimeNow());
  dataPaths = DataPaths();
  if (!job.settingsFile.empty() &&
      !std::filesystem::copy_file(job.settingsFile, dataPaths.configPath,
                                  std::filesystem::copy_options::overwrite_existing, ignored)) {
    forecast.error = "cannot read the settings line " + job.settingsFile.string();
    return forecast;
  }
  startUpDevices();
  onMainWindowCreated();
  if (!job.maskFile.empty() && !importMask(job.maskFile, forecast.error)) return forecast;
  if (!job.lineFile.empty()) {
    if (!std::filesystem::is_regular_file(job.lineFile)) {
      forecast.error = "cannot read the line file " + job.lineFile.string();
      return forecast;
    }
    recordedQueueFileChoice(job.lineFile.wstring());
    dispatchCommand(IDM_IMPORT_LINE_PATTERNS);
  }

  const VirtualBoard& board = virtualSerialBoard();
  const size_t firstCommand = board.commands.size();
  const SerialTraffic before = virtualSerialTraffic();
  TimeAccount account(forecast);
  virtualClockObserve([&account](uint64_t from, uint64_t to) { account.advance(from, to); });
  const uint64_t startMs = virtualClockNow();
  virtualClockSetHostTimer(job.host);
  // The station's board is on a USB serial port; under Wine the port is a terminal. On
  // both a write returns before its bytes are on the line.
  virtualSerialSetWritesBuffered(job.host != HostTimer::Exact);
  recordedDisplaySetDrawingCost(job.windowDcUs, job.pixelUs);
  dispatchCommand(IDC_START_WRITING);
  recordedDisplaySetDrawingCost(0, 0);
  virtualSerialSetWritesBuffered(false);
  virtualClockSetHostTimer(HostTimer::Exact);
  forecast.totalMs = virtualClockNow() - startMs;
  virtualClockObserve(nullptr);

  forecast.strokes = countStrokes(board.commands, firstCommand);
  forecast.commands = static_cast<int>(board.commands.size() - firstCommand);
  const SerialTraffic& after = virtualSerialTraffic();
  forecast.bytes = after.bytesWritten + after.bytesRead - before.bytesWritten - before.bytesRead;
  forecast.exposurePicture = dataPaths.latestExposurePicture;
  writeBoardLog(job.outputFolder / "board.log", board.commands, firstCommand);
  shutDownDevices();
  return forecast;
}

std::string forecastReport(const Forecast& f) {
  if (!f.error.empty()) return "error: " + f.error + "\n";
  char text[600];
  const auto s = [](uint64_t ms) { return double(ms) / 1000.0; };
  std::snprintf(text, sizeof text,
                "total: %.1f s\n"
                "exposure strokes: %.1f s\n"
                "moves between strokes: %.1f s\n"
                "waits and pauses: %.1f s\n"
                "serial traffic: %.1f s\n"
                "strokes: %d\n"
                "commands: %d\n"
                "bytes: %llu\n"
                "laser on: %.1f s\n",
                s(f.totalMs), s(f.strokeMs), s(f.moveMs), s(f.waitMs), s(f.serialMs), f.strokes,
                f.commands, static_cast<unsigned long long>(f.bytes), s(f.laserOnMs));
  const char* host = f.host == HostTimer::WineServerTick ? "Wine"
                     : f.host == HostTimer::WindowsTick  ? "Windows"
                                                         : "exact";
  char pc[160];
  std::snprintf(pc, sizeof pc, "timer: %s\ndrawing: %.0f us a window canvas, %.0f us a pixel\n",
                host, f.windowDcUs, f.pixelUs);
  return text +
         ("exposure picture: " + (f.exposurePicture.empty() ? "none" : f.exposurePicture.string()) +
          "\n") +
         pc;
}
