// telvane-soak: the virtual station writes a large mask and a long line list back to back
// for a bounded wall time, with the operator stopping some runs ("Yes" to the stop question
// at a random moment). After each run it prints the process's resident memory and the
// dwells of the laser; it fails when the memory grows after the first run of each kind by
// more than kGrowthBoundKb. Dwells are reported, not failed: at 9600 baud the writing
// programs stand exposing at every turnaround while they poll for the move's end and send
// the next one, with the voltage kept up between strokes as the raster engine is meant to.
//
// It links what the unit tests link (portable core, virtual board and camera, virtual
// clock, recorded operator). The records the simulation keeps of a run (the operator's
// calls, the drawings, the bytes and commands the board took, its exposure log) grow with
// every run by design; they are emptied between runs, so what remains is the program's
// own memory: the C library is asked to hand its free heap back before each reading. The
// link's trace of every command (standard output) goes to /dev/null; the soak reports on
// standard error.
//
//   telvane-soak [seconds (120)] [seed (from the clock)]
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>

#include "app/command_dispatch.h"
#include "camera/Basler_camera.h"
#include "jobs/raster_writing.h"
#include "link/controller_commands.h"
#include "link/serial_link.h"
#include "pattern/cluster_table.h"
#include "pattern/line_pattern.h"
#include "pattern/pattern_stores.h"
#include "resources/resource.h"
#include "sim/recorded_dialog.h"
#include "sim/recorded_display.h"
#include "sim/recorded_feedback.h"
#include "sim/virtual_camera.h"
#include "sim/virtual_clock.h"
#include "sim/virtual_serial.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/view_geometry.h"

namespace {

// The runs after the first of each kind may hold this much more resident memory. The
// program's stores are fixed and allocated by then; what may still move is the C
// library's heap: the transient vectors of a run (edge points, cluster lists, the
// allocator's arenas) are reused, not grown, so a few hundred kilobytes of slack suffice,
// while a leak of a hundred bytes per command (tens of thousands a run) crosses it
// within a run or two.
constexpr long kGrowthBoundKb = 2048;

long residentKb() {
  malloc_trim(0);
  long pages = 0, resident = 0;
  if (std::FILE* statm = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(statm);
  }
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

void paintDark(ImageBuffer& picture, int left, int low, int right, int high) {
  for (int y = low; y < high; ++y)
    for (int x = left; x < right; ++x) {
      setRed(picture, x, y, 0);
      setGreen(picture, x, y, 0);
      setBlue(picture, x, y, 0);
    }
}

// The station as the program starts it, on a fresh virtual board and camera, the link open.
void startStation(const std::filesystem::path& desktop) {
  virtualClockSetDesktop(desktop);
  virtualClockReset();
  recordedFeedbackReset();
  recordedDisplayReset();
  recordedDialogReset();
  virtualSerialReset();
  virtualCameraReset();
  CameraConnect(camera);
  CameraSetup(camera, 4);
  recomputeViewGeometry(station);
  allocateClusterTable();
  cellGrid.cellSize = 5;
  std::copy_n(std::begin({1000, 1000, 500}), 3, serialLink.speedUmPerS);
  OpenSerialLink(serialLink, true);
}

// A large mask: 60 dark rectangles over the writing area, some overlapping, and a long
// line list: 400 lines in chains of four of every width.
void prepareWork(std::mt19937& random) {
  std::uniform_int_distribution<int> place(0, 940), size(4, 60);
  std::memset(maskImage.pixels, 0xFF, static_cast<size_t>(maskImage.byteSize));
  for (int i = 0; i < 60; ++i) {
    int x = place(random), y = place(random);
    paintDark(maskImage, x, y, x + size(random), y + size(random));
  }
  std::uniform_real_distribution<float> point(-450.0f, 450.0f);
  const int widths[] = {1, 3, 6, 10};
  linePattern.segments.clear();
  for (int chain = 0; chain < 100; ++chain) {
    float x = point(random), y = point(random);
    for (int i = 0; i < 4; ++i) {
      float nx = point(random), ny = point(random);
      linePattern.segments.push_back({x, y, nx, ny, widths[i]});
      x = nx;
      y = ny;
    }
  }
  linePattern.active = 1;
  alignmentMarkImage.valid = 0;
}

// The simulation's records of a run, emptied so that they do not count as the program's.
void forgetRecords() {
  recordedFeedbackReset();
  recordedDisplayReset();
  virtualSerialClearWritten();
  VirtualBoard& board = virtualSerialBoard();
  board.commands.clear();
  board.commands.shrink_to_fit();
  board.exposure.clear();
  board.exposure.shrink_to_fit();
  board.dwell = DwellWatch();
}

}  // namespace

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 120;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10))
                                 : static_cast<unsigned>(std::random_device()());
  std::mt19937 random(seed);
  const std::filesystem::path desktop =
      std::filesystem::temp_directory_path() / ("telvane_soak_" + std::to_string(getpid()));
  std::filesystem::create_directories(desktop);
  if (!std::freopen("/dev/null", "w", stdout)) return 2;
  std::fprintf(stderr, "telvane-soak: %d s, seed %u\n", seconds, seed);

  startStation(desktop);
  prepareWork(random);
  const auto start = std::chrono::steady_clock::now();
  const auto wallSeconds = [&] {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  uint64_t virtualMs[2] = {0, 0};  // an unstopped run of each kind, for the stop's moment
  long baselineKb = 0, highestKb = 0;
  int runs = 0, dwells = 0, stops = 0;
  bool grew = false;
  while (runs < 2 || wallSeconds() < seconds) {
    const int kind = runs % 2;  // 0 the mask, 1 the lines
    maskImage.valid = kind == 0;
    linesEnabled = kind == 1;
    const bool stop = runs >= 2 && random() % 2 == 0;
    if (stop) {
      std::uniform_int_distribution<uint64_t> moment(1, virtualMs[kind]);
      recordedScriptClick(virtualClockNow() + moment(random), QueuedTarget::MainWindow);
      recordedQueueAnswer(Answer::Yes);
      ++stops;
    }
    const uint64_t before = virtualClockNow();
    dispatchCommand(IDC_START_WRITING);
    virtualClockAdvance(2000);  // the board ends the return
    if (runs < 2) virtualMs[kind] = virtualClockNow() - before;
    const VirtualBoard& board = virtualSerialBoard();
    const std::vector<BoardDwell> found = boardDwells(board, virtualClockNow());
    const BoardDwell* longest = nullptr;  // the run's longest dwell stands for the others
    for (const BoardDwell& d : found)
      if (!longest || d.durationMs > longest->durationMs) longest = &d;
    dwells += static_cast<int>(found.size());
    ++runs;
    forgetRecords();
    const long kb = residentKb();
    if (runs == 2) baselineKb = kb;
    if (runs > 2) highestKb = std::max(highestKb, kb);
    if (runs > 2 && kb - baselineKb > kGrowthBoundKb) grew = true;
    std::fprintf(stderr, "run %d %s%s: %.1f s virtual, resident %ld kB, dwells %zu", runs,
                 kind == 0 ? "mask" : "lines", stop ? " stopped" : "",
                 (virtualClockNow() - before) / 1000.0, kb, found.size());
    if (longest)
      std::fprintf(stderr, ", the longest %s after %s until %s", dwellLine(*longest).c_str(),
                   longest->commandBefore.c_str(), longest->commandEnding.c_str());
    std::fputc('\n', stderr);
    std::fflush(stderr);
  }
  CloseSerialLink(serialLink);
  std::error_code ignored;
  std::filesystem::remove_all(desktop, ignored);
  std::fprintf(stderr,
               "telvane-soak: %d runs (%d stopped) in %.0f s, resident %ld kB after the first two, "
               "at most %ld kB later (bound +%ld kB), %d dwells\n",
               runs, stops, wallSeconds(), baselineKb, std::max(highestKb, baselineKb),
               kGrowthBoundKb, dwells);
  if (grew) {
    std::fprintf(stderr, "telvane-soak: FAILED (memory grew)\n");
    return 1;
  }
  return 0;
}
