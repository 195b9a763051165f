// The clock seam on Windows.
#include <shlobj.h>
#include <windows.h>

#include "station/system_services.h"

uint64_t systemTickMs() { return GetTickCount64(); }

void systemSleepMs(uint32_t milliseconds) { Sleep(milliseconds); }

LocalTime systemLocalTime() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

std::filesystem::path systemDesktopFolder() {
  wchar_t folder[MAX_PATH] = {};
  SHGetSpecialFolderPathW(nullptr, folder, CSIDL_DESKTOP, FALSE);
  return std::filesystem::path(folder);
}
