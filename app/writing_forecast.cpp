// The forecast's arguments and message: see writing_forecast.h.
#include "app/writing_forecast.h"

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>

#include "link/serial_link.h"
#include "pattern/image_buffer.h"
#include "pattern/line_file.h"
#include "pattern/line_pattern.h"
#include "pattern/mask_import.h"
#include "pattern/pattern_stores.h"
#include "station/settings.h"

std::vector<std::wstring> prepareForecastArguments(const std::filesystem::path& folder) {
  const bool mask = maskImage.valid != 0 && !maskPicturePath.empty();
  const bool lines = linesEnabled == 1 && linePattern.active == 1 && !linePattern.segments.empty();
  if (!mask && !lines) return {};
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  const std::filesystem::path settings = folder / "Config.txt";
  if (!writeSettingsFile(settings, serialLink.comPort)) return {};
  std::vector<std::wstring> arguments = {L"--settings", settings.wstring()};
  if (mask) arguments.insert(arguments.end(), {L"--mask", maskPicturePath});
  if (lines) {
    const std::filesystem::path lineFile = folder / "lines.txt";
    std::ofstream(lineFile, std::ios::binary) << buildLineText();
    arguments.insert(arguments.end(), {L"--lines", lineFile.wstring()});
  }
  arguments.push_back((folder / "run").wstring());
  return arguments;
}

std::wstring forecastCommandLine(const std::wstring& program,
                                 const std::vector<std::wstring>& arguments) {
  std::wstring line = L"\"" + program + L"\"";
  for (const std::wstring& argument : arguments) line += L" \"" + argument + L"\"";
  return line;
}

std::string forecastMessage(int exitStatus, const std::string& output) {
  std::map<std::string, std::string> values;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    if (const size_t colon = line.find(": "); colon != std::string::npos)
      values[line.substr(0, colon)] = line.substr(colon + 2);
  }
  double totalS = 0;
  if (exitStatus != 0 || std::sscanf(values["total"].c_str(), "%lf", &totalS) != 1) {
    const std::string reason = values.contains("error") ? values["error"] : output;
    return "The forecast could not be made.\n" + reason;
  }
  const long long rounded = static_cast<long long>(totalS + 0.5);
  char head[80];
  std::snprintf(head, sizeof head, "Writing time: %lld min %lld s\n\n", rounded / 60, rounded % 60);
  std::string text = head;
  for (const char* name :
       {"exposure strokes", "moves between strokes", "waits and pauses", "serial traffic",
        "laser on", "strokes", "commands", "bytes", "timer", "drawing", "exposure picture"}) {
    text += std::string(name) + ": " + values[name] + "\n";
  }
  return text;
}
