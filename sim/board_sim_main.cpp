// telvane-board-sim: the virtual controller board served on a pseudo-terminal, on real
// time, so that telvane.exe under Wine (COM port symlinked to the terminal) talks to it as
// to the real board. Prints the terminal's path, logs every command received with its
// time, and can be told to misbehave. Linux only.
//
// A pseudo-terminal passes bytes at once, so the line's timing is kept here: each byte the
// program writes arrives one frame (10 bits at 9600 8N1, from the terminal settings the
// program set) after the one before, a command acts when its NUL has arrived, and the
// board's replies go back paced at the same rate.
//
//   telvane-board-sim [--link PATH] [--log FILE] [--silent] [--garbage]
//                     [--drop-every N] [--hang-up-after N]
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <utility>

#include "sim/virtual_board.h"

namespace {

volatile std::sig_atomic_t stopRequested = 0;

void onSignal(int) { stopRequested = 1; }

double realMsExact() {
  using namespace std::chrono;
  return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count() / 1000.0;
}

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

// One byte's frame at the terminal settings the program set, ms (start bit, data bits,
// parity, stop bits).
double byteMs(int slaveFd) {
  termios t;
  if (tcgetattr(slaveFd, &t) != 0) return 10.0 / 9600 * 1000;
  static const std::pair<speed_t, double> kBauds[] = {
      {B300, 300},   {B600, 600},     {B1200, 1200},   {B2400, 2400},   {B4800, 4800},
      {B9600, 9600}, {B19200, 19200}, {B38400, 38400}, {B57600, 57600}, {B115200, 115200}};
  double baud = 9600;
  for (const auto& [code, rate] : kBauds)
    if (cfgetospeed(&t) == code) baud = rate;
  const tcflag_t size = t.c_cflag & CSIZE;
  const int dataBits = size == CS5 ? 5 : size == CS6 ? 6 : size == CS7 ? 7 : 8;
  const double bits =
      1 + dataBits + ((t.c_cflag & PARENB) ? 1 : 0) + ((t.c_cflag & CSTOPB) ? 2 : 1);
  return bits / baud * 1000.0;
}

struct TimedByte {
  char byte;
  double atMs;  // arrival at the board, or when it is due back at the program
};

// The board's two directions on the line, in ms since start.
struct Line {
  std::deque<TimedByte> toBoard;
  std::deque<TimedByte> toProgram;
  double toBoardFreeMs = 0;
  double toProgramFreeMs = 0;
};

// What the board has sent by atMs goes back one frame after another.
void collectReplies(VirtualBoard& board, Line& line, double frameMs, double atMs) {
  char byte;
  while (boardTakeOutput(board, &byte, 1) == 1) {
    line.toProgramFreeMs = std::max(line.toProgramFreeMs, atMs) + frameMs;
    line.toProgram.push_back({byte, line.toProgramFreeMs});
  }
}

// Brings the board to atMs event by event, so each report leaves when its move ended.
void advanceBoard(VirtualBoard& board, Line& line, double frameMs, uint64_t atMs) {
  for (uint64_t next; (next = boardNextEventMs(board)) <= atMs;) {
    boardAdvance(board, next);
    collectReplies(board, line, frameMs, double(next));
  }
  boardAdvance(board, atMs);
  collectReplies(board, line, frameMs, double(atMs));
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
  Line line;
  char buffer[256];
  while (!stopRequested && !board.hungUp) {
    // Woken to the microsecond when a command's NUL arrives or a reply byte is due.
    const double nowExact = realMsExact() - startMs;
    double wake = std::min<double>(double(boardNextEventMs(board)), nowExact + 10);
    for (const TimedByte& b : line.toBoard)
      if (b.byte == '\0') {
        wake = std::min(wake, b.atMs);
        break;
      }
    if (!line.toProgram.empty()) wake = std::min(wake, line.toProgram.front().atMs);
    const double waitMs = std::max(0.0, wake - nowExact);
    const timespec timeout = {static_cast<time_t>(waitMs / 1000),
                              static_cast<long>(std::fmod(waitMs, 1000.0) * 1e6)};
    pollfd fds = {master, POLLIN, 0};
    int ready = ppoll(&fds, 1, &timeout, nullptr);
    const double nowMs = realMsExact() - startMs;
    const uint64_t now = static_cast<uint64_t>(nowMs);
    const double frameMs = byteMs(slaveFd);
    if (ready > 0 && (fds.revents & POLLIN)) {
      ssize_t n = read(master, buffer, sizeof buffer);
      for (ssize_t i = 0; i < n; ++i) {
        line.toBoardFreeMs = std::max(line.toBoardFreeMs, nowMs) + frameMs;
        line.toBoard.push_back({buffer[i], line.toBoardFreeMs});
      }
    }
    // Each byte reaches the board at its arrival time; a command acts on its NUL's.
    while (!line.toBoard.empty() && line.toBoard.front().atMs <= nowMs && !board.hungUp) {
      const uint64_t arrivedMs = static_cast<uint64_t>(std::ceil(line.toBoard.front().atMs));
      advanceBoard(board, line, frameMs, arrivedMs);
      boardReceive(board, &line.toBoard.front().byte, 1, arrivedMs);
      collectReplies(board, line, frameMs, line.toBoard.front().atMs);
      line.toBoard.pop_front();
    }
    advanceBoard(board, line, frameMs, now);
    for (; logged < board.commands.size(); ++logged) {
      if (!log) continue;
      std::fprintf(log, "%llu %s\n", static_cast<unsigned long long>(board.commands[logged].timeMs),
                   printable(board.commands[logged].text).c_str());
      std::fflush(log);
    }
    size_t count = 0;
    while (count < sizeof buffer && !line.toProgram.empty() &&
           line.toProgram.front().atMs <= nowMs) {
      buffer[count++] = line.toProgram.front().byte;
      line.toProgram.pop_front();
    }
    if (count > 0 && !writeAll(master, buffer, count)) break;
  }
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
