// The writing-time forecast: a writing run on the virtual station and the virtual clock,
// set up as the operator sets up the program (the settings line, "Import Image" and
// "Mask Pattern", "Import Line Patterns") and run as "Start Writing" runs it, as fast as
// the processor allows. Every advance of the clock during the run is attributed to what
// the station did meanwhile. telvane-forecast prints the result; the tests run it too.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "sim/virtual_clock.h"

struct ForecastJob {
  std::filesystem::path settingsFile;  // a Config.txt line; empty: the program's defaults
  std::filesystem::path maskFile;      // a BMP or PNG; empty: no mask imported
  std::filesystem::path lineFile;      // empty: no lines imported
  // The desktop of the run: Orvalin_Data lands there, and board.log, the board's commands.
  std::filesystem::path outputFolder;
  // How the program's host gives it the tick count and its sleeps during the run; the
  // station keeps exact time whatever it is. The station's PC runs Windows.
  HostTimer host = HostTimer::WindowsTick;
  // What drawing on the display window costs on the operator's PC, microseconds: the
  // engines mark every written cell there. Zero: free, as on a fast Windows PC.
  double windowDcUs = 0;
  double pixelUs = 0;
};

struct Forecast {
  std::string error;     // why there is no forecast; empty when there is one
  uint64_t totalMs = 0;  // "Start Writing" to "All Writings finished"
  // The total in four parts that add up to it.
  uint64_t strokeMs = 0;  // the stage moving with the laser on
  uint64_t moveMs = 0;    // the stage moving with the laser off
  uint64_t waitMs = 0;    // the stage standing, the line quiet
  uint64_t serialMs = 0;  // the stage standing while bytes are on the line
  uint64_t laserOnMs = 0;
  int strokes = 0;                        // XY moves started with the laser on
  int commands = 0;                       // commands the board received
  uint64_t bytes = 0;                     // bytes on the line, both directions
  std::filesystem::path exposurePicture;  // the developed resist, saved in the run folder
  // The PC it was made for, as the job gave it.
  HostTimer host = HostTimer::WindowsTick;
  double windowDcUs = 0;
  double pixelUs = 0;
};

// Sets the station up from the job's files and runs the writing run on the virtual station.
Forecast forecastWritingRun(const ForecastJob& job);
// The forecast as telvane-forecast prints it: "name: value" lines, times in seconds.
std::string forecastReport(const Forecast& forecast);
