// telvane-board-sim: the virtual controller board served on a pseudo-terminal, on real
// time, so that telvane.exe under Wine (COM port symlinked to the terminal) talks to it as
// to the real board. Prints the terminal's path, logs every command received with its
// time, prints and logs every dwell of the laser ("dwell <ms> ms at <x> <y>", um of the
// carriage) as it ends, and can be told to misbehave. Linux only.
//
//   telvane-board-sim [--link PATH] [--log FILE] [--silent] [--garbage]
//                     [--drop-every N] [--hang-up-after N]
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "sim/virtual_board.h"

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void onSignal(int) { stopRequested = 1; }

uint64_t realMs() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

struct Options {
  std::string linkPath;
  std::string logPath;
  BoardFaults faults;
};

bool parseOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    std::string arg = argv[i];
    bool hasValue = i + 1 < argc;
    if (arg == "--link" && hasValue) {
      options.linkPath = argv[++i];
    } else if (arg == "--log" && hasValue) {
      options.logPath = argv[++i];
    } else if (arg == "--silent") {
      options.faults.silent = true;
    } else if (arg == "--garbage") {
      options.faults.garbage = true;
    } else if (arg == "--drop-every" && hasValue) {
      options.faults.dropEveryNthReply = std::atoi(argv[++i]);
    } else if (arg == "--hang-up-after" && hasValue) {
      options.faults.hangUpAfterCommands = std::atoi(argv[++i]);
    } else {
      return false;
    }
  }
  return true;
}

// The command as a log line: printable bytes as they are, others as \xNN.
std::string printable(const std::string& text) {
  std::string out;
  for (unsigned char c : text) {
    if (c >= 0x20 && c < 0x7f) {
      out.push_back(static_cast<char>(c));
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02x", c);
      out += escaped;
    }
  }
  return out;
}

int openTerminal(std::string& slavePath, int& slaveFd) {
  int master = posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) return -1;
  const char* name = ptsname(master);
  if (!name) return -1;
  slavePath = name;
  // Held open so that the terminal survives the program closing and reopening its port.
  slaveFd = open(name, O_RDWR | O_NOCTTY);
  if (slaveFd < 0) return -1;
  termios raw;
  tcgetattr(slaveFd, &raw);
  cfmakeraw(&raw);
  cfsetispeed(&raw, B9600);
  cfsetospeed(&raw, B9600);
  tcsetattr(slaveFd, TCSANOW, &raw);
  return master;
}

// A dwell line on standard error (standard output carries only the terminal's path) and in
// the log, with the time it ended.
void reportDwell(std::FILE* log, const BoardDwell& dwell) {
  const std::string line = dwellLine(dwell);
  std::fprintf(stderr, "telvane-board-sim: %s\n", line.c_str());
  if (!log) return;
  std::fprintf(log, "%llu %s\n", static_cast<unsigned long long>(dwell.startMs + dwell.durationMs),
               line.c_str());
  std::fflush(log);
}

bool writeAll(int fd, const char* data, size_t count) {
  while (count > 0) {
    ssize_t n = write(fd, data, count);
    if (n <= 0) return false;
    data += n;
    count -= static_cast<size_t>(n);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parseOptions(argc, argv, options)) {
    std::fprintf(stderr,
                 "usage: telvane-board-sim [--link PATH] [--log FILE] [--silent] [--garbage] "
                 "[--drop-every N] [--hang-up-after N]\n");
    return 2;
  }
  std::string slavePath;
  int slaveFd = -1;
  int master = openTerminal(slavePath, slaveFd);
  if (master < 0) {
    std::perror("telvane-board-sim: pseudo-terminal");
    return 1;
  }
  if (!options.linkPath.empty()) {
    unlink(options.linkPath.c_str());
    if (symlink(slavePath.c_str(), options.linkPath.c_str()) != 0) {
      std::perror("telvane-board-sim: symlink");
      return 1;
    }
  }
  std::FILE* log = options.logPath.empty() ? nullptr : std::fopen(options.logPath.c_str(), "w");
  std::signal(SIGINT, onSignal);
  std::signal(SIGTERM, onSignal);
  std::printf("%s\n", slavePath.c_str());
  std::fflush(stdout);

  VirtualBoard board;
  boardReset(board);
  board.faults = options.faults;
  const uint64_t startMs = realMs();
  size_t logged = 0;
  size_t dwellsReported = 0;
  char buffer[256];
  while (!stopRequested && !board.hungUp) {
    uint64_t now = realMs() - startMs;
    uint64_t next = boardNextEventMs(board);
    int timeoutMs = next <= now ? 0 : static_cast<int>(std::min<uint64_t>(next - now, 10));
    pollfd fds = {master, POLLIN, 0};
    int ready = poll(&fds, 1, timeoutMs);
    now = realMs() - startMs;
    if (ready > 0 && (fds.revents & POLLIN)) {
      ssize_t n = read(master, buffer, sizeof buffer);
      if (n > 0) boardReceive(board, buffer, static_cast<size_t>(n), now);
    }
    boardAdvance(board, now);
    for (; logged < board.commands.size(); ++logged) {
      if (!log) continue;
      std::fprintf(log, "%llu %s\n", static_cast<unsigned long long>(board.commands[logged].timeMs),
                   printable(board.commands[logged].text).c_str());
      std::fflush(log);
    }
    for (; dwellsReported < board.dwell.finished.size(); ++dwellsReported)
      reportDwell(log, board.dwell.finished[dwellsReported]);
    size_t count = boardTakeOutput(board, buffer, sizeof buffer);
    if (count > 0 && !writeAll(master, buffer, count)) break;
  }
  // A laser left exposing on a standing stage is a dwell that lasts until the end.
  const std::vector<BoardDwell> dwells = boardDwells(board, realMs() - startMs);
  for (size_t i = dwellsReported; i < dwells.size(); ++i) reportDwell(log, dwells[i]);
  if (log) {
    if (board.hungUp)
      std::fprintf(log, "%llu hung up\n", static_cast<unsigned long long>(realMs() - startMs));
    std::fclose(log);
  }
  close(slaveFd);
  close(master);
  if (!options.linkPath.empty()) unlink(options.linkPath.c_str());
  return 0;
}
