// "Forecast Writing Time": the files and arguments handed to telvane-forecast for the
// current settings, mask picture and lines, and the message made of what it prints. The
// Windows side (writing_forecast_win32.cpp) runs the program beside telvane.exe without
// a console window and shows the message.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Writes the settings line and the lines that "Start Writing" would write into folder
// and returns the forecast's arguments: --settings FILE [--mask PICTURE] [--lines FILE]
// OUTPUT_FOLDER. Empty when the run would write nothing (no mask picture in the mask
// layer, no lines to write).
std::vector<std::wstring> prepareForecastArguments(const std::filesystem::path& folder);
// One command line: the program and the arguments, each quoted.
std::wstring forecastCommandLine(const std::wstring& program,
                                 const std::vector<std::wstring>& arguments);
// The message box text for the forecast's exit status and what it printed.
std::string forecastMessage(int exitStatus, const std::string& output);

// The command (Windows side): ignored while an operation runs.
void onForecastWritingCommand();

constexpr const char* kForecastTitle = "Forecast Writing Time";
constexpr const char* kNothingToForecast =
    "Nothing to write: import a mask picture or draw lines first.";
constexpr const char* kForecastProgramMissing =
    "telvane-forecast.exe was not found beside the program.";
