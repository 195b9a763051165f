// "Forecast Writing Time" on Windows: telvane-forecast.exe beside the program's own .exe,
// run without a console window, its standard output read through a pipe.
#include <windows.h>

#include <iterator>
#include <string>
#include <vector>

#include "app/writing_forecast.h"
#include "camera/display_surface_win32.h"
#include "station/feedback.h"
#include "station/responsive_wait.h"

namespace {

std::wstring forecastProgramPath() {
  wchar_t own[MAX_PATH * 4];
  const DWORD length = GetModuleFileNameW(nullptr, own, static_cast<DWORD>(std::size(own)));
  std::wstring path(own, length);
  path.erase(path.find_last_of(L"\\/") + 1);
  return path + L"telvane-forecast.exe";
}

// Runs the command line and gathers what it prints; false when it could not start.
bool runCaptured(std::wstring commandLine, std::string& output, DWORD& exitStatus) {
  SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, &inherit, 0)) return false;
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = writeEnd;
  startup.hStdError = writeEnd;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  PROCESS_INFORMATION process = {};
  const BOOL started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE,
                                      CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process);
  CloseHandle(writeEnd);
  if (!started) {
    CloseHandle(readEnd);
    return false;
  }
  char buffer[4096];
  DWORD got = 0;
  while (ReadFile(readEnd, buffer, sizeof buffer, &got, nullptr) && got > 0)
    output.append(buffer, got);
  WaitForSingleObject(process.hProcess, INFINITE);
  GetExitCodeProcess(process.hProcess, &exitStatus);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  CloseHandle(readEnd);
  return true;
}

// How this PC gives the program its time: the forecast runs the program on the same
// timer and charges the same cost for each cell the engines mark on the display. Under
// Wine the tick count moves only with calls into the Wine server, and every pixel marked
// invalidates the display window, a server call too.
std::vector<std::wstring> hostArguments() {
  const bool wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  const DrawingCost cost = measureDrawingCost(SurfaceWindow::Main);
  return {L"--host",         wine ? L"wine" : L"windows",
          L"--window-dc-us", std::to_wstring(cost.windowDcUs),
          L"--pixel-us",     std::to_wstring(cost.pixelUs)};
}

}  // namespace

void onForecastWritingCommand() {
  if (operationRunning()) return;
  const std::wstring program = forecastProgramPath();
  if (GetFileAttributesW(program.c_str()) == INVALID_FILE_ATTRIBUTES) {
    feedbackMessageBox(kForecastProgramMissing, kForecastTitle, MessageKind::Ok);
    return;
  }
  wchar_t temporary[MAX_PATH + 1];
  GetTempPathW(MAX_PATH + 1, temporary);
  std::vector<std::wstring> arguments =
      prepareForecastArguments(std::filesystem::path(temporary) / L"telvane-forecast");
  if (arguments.empty()) {
    feedbackMessageBox(kNothingToForecast, kForecastTitle, MessageKind::Ok);
    return;
  }
  const std::vector<std::wstring> host = hostArguments();
  arguments.insert(arguments.end() - 1, host.begin(), host.end());  // before the folder
  HCURSOR previous = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
  std::string output;
  DWORD exitStatus = 1;
  const bool ran = runCaptured(forecastCommandLine(program, arguments), output, exitStatus);
  SetCursor(previous);
  feedbackMessageBox(ran ? forecastMessage(static_cast<int>(exitStatus), output)
                         : std::string(kForecastProgramMissing),
                     kForecastTitle, MessageKind::Ok);
}
