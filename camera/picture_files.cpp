// Saving pictures and naming files. Saves report nothing when they fail; the counters
// advance in any case, and restart at 0 in every run of the program.
#include "camera/picture_files.h"

#include <cstdio>
#include <filesystem>

#include "camera/file_dialog.h"
#include "station/responsive_wait.h"
#include "station/station.h"
#include "station/status_display.h"
#include "station/system_services.h"

int opticNumber = 0;
int cameraNumber = 0;

namespace {

constexpr int kContextFailureLimit = 20;
constexpr int kCopyFailuresBeforeNewBitmap = 10;

std::filesystem::path numberedPicture(const DataPaths& paths, const char* name, int number) {
  char file[64];
  std::snprintf(file, sizeof file, "%s(%d).jpg", name, number);
  return std::filesystem::path(paths.runFolder) / file;
}

void makeBitmap(Canvas* canvas) {
  while (!canvasCreateBitmap(canvas, kDisplayWidth, kDisplayHeight)) {
    showStatus("CreateCompatibleBitmap Failed");
    systemSleepMs(100);
  }
}

}  // namespace

int SaveViewImage(DataPaths& paths, SurfaceWindow window) {
  Canvas* canvas = canvasNew(window);
  int contextFailures = 0;
  makeBitmap(canvas);
  while (!canvasCreateContext(canvas)) {
    showStatus("CreateCompatibleDC has failed");
    if (++contextFailures >= kContextFailureLimit) {
      canvasFree(canvas);
      return 0;
    }
  }
  canvasSelectBitmap(canvas);
  int copyFailures = 0;
  while (!canvasCopyFromWindow(canvas)) {
    char text[80];
    std::snprintf(text, sizeof text, "BitBlt to window has failed, error count: %d", copyFailures);
    showStatus(text);
    waitResponsive(100);
    if (++copyFailures >= kCopyFailuresBeforeNewBitmap) {
      // The copy is never abandoned; a fresh bitmap gives it a new chance.
      canvasRestoreSelection(canvas);
      canvasDeleteBitmap(canvas);
      makeBitmap(canvas);
      canvasSelectBitmap(canvas);
      copyFailures = 0;
    }
  }
  ensureRunFolder(paths, 0);
  canvasSavePng(canvas, numberedPicture(paths, "optic", opticNumber));
  canvasRestoreSelection(canvas);
  opticNumber = nextFileNumber(opticNumber);
  canvasFree(canvas);
  return 1;
}

void saveCameraPicture(Canvas* canvas) {
  ensureRunFolder(dataPaths, 0);
  canvasSavePng(canvas, numberedPicture(dataPaths, "camera", cameraNumber));
  cameraNumber = nextFileNumber(cameraNumber);
}

std::wstring UniqueFileName(const DataPaths& paths, const std::wstring& base,
                            const std::wstring& extension) {
  const std::filesystem::path folder(paths.runFolder);
  std::filesystem::path candidate = folder / (base + L"." + extension);
  for (int n = 0; std::filesystem::exists(candidate); ++n) {
    candidate = folder / (base + L"_" + std::to_wstring(n) + L"." + extension);
  }
  return candidate.wstring();
}

int AskFileToOpen(std::wstring& path) {
  std::wstring chosen;
  if (!fileDialogAskOpen(chosen)) return 1;
  // "%S" prints a wide path narrowed; characters beyond ASCII show as '?', and unlike a
  // code-page conversion this cannot fail.
  std::string narrow;
  for (wchar_t c : chosen) narrow += (c > 0 && c < 128) ? static_cast<char>(c) : '?';
  char text[600];
  std::snprintf(text, sizeof text, "File:%s", narrow.c_str());
  showStatus(text);
  path = chosen;
  return 1;
}
