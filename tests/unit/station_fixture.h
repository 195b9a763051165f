// A fresh station for each test: default records, an empty temporary desktop, the
// virtual clock at a known time and recorders with no calls.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "app/shell_commands.h"
#include "jobs/raster_writing.h"
#include "jobs/writing_condition.h"
#include "link/serial_link.h"
#include "pattern/line_pattern.h"
#include "pattern/pattern_stores.h"
#include "sim/recorded_dialog.h"
#include "sim/recorded_display.h"
#include "sim/recorded_feedback.h"
#include "sim/virtual_clock.h"
#include "sim/virtual_serial.h"
#include "station/data_paths.h"
#include "station/responsive_wait.h"
#include "station/station.h"

// The lines that start with prefix, with the prefix cut off.
inline std::vector<std::string> linesAfter(const std::string& prefix,
                                           const std::vector<std::string>& lines) {
  std::vector<std::string> found;
  for (const std::string& line : lines)
    if (line.rfind(prefix, 0) == 0) found.push_back(line.substr(prefix.size()));
  return found;
}

// True when some line starts with prefix: the operator's calls unless other lines are given.
inline bool hasLine(const std::string& prefix,
                    const std::vector<std::string>& lines = recordedCalls()) {
  return !linesAfter(prefix, lines).empty();
}

class StationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    desktop_ = std::filesystem::temp_directory_path() /
               ("telvane_desktop_" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(desktop_);
    virtualClockSetDesktop(desktop_);
    virtualClockReset();
    virtualClockSetLocalTime({2024, 3, 17, 14, 5, 0});
    recordedFeedbackReset();
    recordedDisplayReset();
    recordedDialogReset();
    station = StationParameters();
    laser = LaserOutput();
    serialLink = SerialLink();
    virtualSerialReset();
    dataPaths = DataPaths();
    writingActive = 0;
    writingConditionCounter = 0;
    blinkMs = 500;
    centerWritingOnly = 0;
    cellGrid.cellSize = 5;
    // The layers as the program starts: both pictures and the lines take part.
    maskImage.valid = alignmentMarkImage.valid = linesEnabled = 1;
    linePattern = LinePattern();
  }

  void TearDown() override { std::filesystem::remove_all(desktop_, removeError_); }

  static std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }

  static void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }

  std::filesystem::path desktop_;
  std::error_code removeError_;  // a desktop left behind is no failure of the test
};
