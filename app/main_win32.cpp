// Telvane's entry point. A map of the program:
//   app/      start-up and shutdown, station record and geometry, command dispatch,
//             status and the responsive wait; the windows in the *_win32 files
//   link/     the controller board: serial link, commands, stage motion, writing
//   camera/   acquisition, exposure and gain, live rendering, picture files
//   pattern/  raster stores, mask import, edges, clusters, line patterns
// One thread: there are no worker threads. A long operation is a loop inside a command
// handler that pumps the message queue in its waits, so the windows stay alive and a
// click can stop it.
#include <objidl.h>
#include <windows.h>
// GDI+ headers use min and max, which NOMINMAX keeps out of windows.h.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include "app/main_window_win32.h"
#include "app/startup.h"
#include "resources/resource.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showMode) {
  LoadStringW(instance, IDS_APP_TITLE, windowTitle, kTitleChars);
  LoadStringW(instance, IDS_WINDOW_CLASS, windowClassName, kTitleChars);
  registerWindowClasses(instance);

  Gdiplus::GdiplusStartupInput gdiplusInput;
  ULONG_PTR gdiplusToken = 0;
  Gdiplus::GdiplusStartup(&gdiplusToken, &gdiplusInput, nullptr);

  startUpDevices();
  if (!initInstance(instance, showMode)) return 0;
  startFirstJob();

  HACCEL accelerators = LoadAcceleratorsW(instance, MAKEINTRESOURCEW(IDR_MAIN_ACCELERATORS));
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0)) {
    if (!TranslateAcceleratorW(message.hwnd, accelerators, &message)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }

  shutDownDevices();
  KillTimer(mainWindow, 1);
  Gdiplus::GdiplusShutdown(gdiplusToken);
  return static_cast<int>(message.wParam);
}
