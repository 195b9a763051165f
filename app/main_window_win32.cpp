// The main window and the display window: classes, creation and the main window
// procedure, which only cracks messages and hands them on (see main_window_win32.h).
#include "app/main_window_win32.h"

#include <windowsx.h>

#include <cwchar>

#include "app/command_dispatch.h"
#include "app/display_pointer.h"
#include "app/display_window_win32.h"
#include "app/main_controls_win32.h"
#include "app/writing_forecast.h"
#include "camera/heap_blocks.h"
#include "link/jog_pad_win32.h"
#include "resources/resource.h"
#include "station/station.h"

WCHAR windowTitle[kTitleChars] = L"Telvane";
WCHAR windowClassName[kTitleChars] = L"Telvane";

namespace {

constexpr int kMainWidth = 1482;
constexpr int kMainHeight = 1128;

INT_PTR CALLBACK aboutBoxProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG: return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
      }
      break;
    default: break;
  }
  return FALSE;
}

BOOL onCreate(HWND window, LPCREATESTRUCT) {
  // CreateWindow has not returned yet; the first states below already talk to the window.
  mainWindow = window;
  createMainControls(window);
  createLaserControls(laser, window);
  onMainWindowCreated();
  return TRUE;
}

void onCommand(HWND window, int id, HWND, UINT) {
  switch (id) {
    case IDM_ABOUT:
      DialogBoxW(appInstance, MAKEINTRESOURCEW(IDD_ABOUTBOX), window, aboutBoxProc);
      break;
    case IDM_EXIT: DestroyWindow(window); break;
    case IDM_FORECAST_WRITING: onForecastWritingCommand(); break;
    default: dispatchCommand(id); break;
  }
}

void onPaint(HWND window) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  paintJogPad(dc);
  EndPaint(window, &paint);
}

void onKeyDown(HWND, UINT virtualKey, BOOL, int, UINT) {
  onMainKeyDown(static_cast<int>(virtualKey));
}

// The main window keeps the mouse while the button is down, so a jog-pad press ends
// even when the button is let go outside the window.
void onLeftButtonDown(HWND window, BOOL, int x, int y, UINT) {
  SetCapture(window);
  onMainLeftButtonDown(x, y);
}

void onLeftButtonUp(HWND, int, int, UINT) {
  ReleaseCapture();
  onMainLeftButtonUp();
}

// The main window keeps the keyboard focus, so the wheel's messages come here; a turn with
// the pointer over the display is the display's zoom.
void onMouseWheel(HWND, int x, int y, int delta, UINT) {
  POINT point = {x, y};
  RECT area;
  GetWindowRect(displayWindow, &area);
  if (PtInRect(&area, point)) onDisplayWheel(delta);
}

void onTimer(HWND, UINT timerId) { onMainTimer(static_cast<int>(timerId)); }

void onDestroy(HWND) {
  onMainWindowDestroyed();
  PostQuitMessage(0);
}

LRESULT CALLBACK mainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    HANDLE_MSG(window, WM_CREATE, onCreate);
    HANDLE_MSG(window, WM_COMMAND, onCommand);
    HANDLE_MSG(window, WM_PAINT, onPaint);
    HANDLE_MSG(window, WM_KEYDOWN, onKeyDown);
    HANDLE_MSG(window, WM_LBUTTONDOWN, onLeftButtonDown);
    HANDLE_MSG(window, WM_LBUTTONUP, onLeftButtonUp);
    HANDLE_MSG(window, WM_MOUSEWHEEL, onMouseWheel);
    case WM_CAPTURECHANGED:  // the mouse was taken away mid-press: end the jog
      onMainLeftButtonUp();
      return 0;
      HANDLE_MSG(window, WM_TIMER, onTimer);
      HANDLE_MSG(window, WM_DESTROY, onDestroy);
    default: return DefWindowProcW(window, message, wParam, lParam);
  }
}

ATOM registerClass(HINSTANCE instance, const WCHAR* className, WNDPROC procedure) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.style = CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = instance;
  windowClass.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_TELVANE));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_WINDOW + 1));
  windowClass.lpszMenuName = MAKEINTRESOURCEW(IDR_MAIN_MENU);
  windowClass.lpszClassName = className;
  windowClass.hIconSm = LoadIconW(instance, MAKEINTRESOURCEW(IDI_TELVANE));
  return RegisterClassExW(&windowClass);
}

}  // namespace

ATOM registerWindowClasses(HINSTANCE instance) {
  ATOM mainClass = registerClass(instance, windowClassName, mainWindowProc);
  registerClass(instance, kDisplayWindowClass, displayWindowProc);
  return mainClass;
}

BOOL initInstance(HINSTANCE instance, int showMode) {
  appInstance = instance;
  std::wcscpy(windowTitle, L"Telvane");
  HWND window = CreateWindowW(windowClassName, windowTitle, WS_OVERLAPPEDWINDOW, 0, 0, kMainWidth,
                              kMainHeight, nullptr, nullptr, instance, nullptr);
  displayWindow = CreateWindowW(kDisplayWindowClass, windowTitle, WS_CHILD | WS_VISIBLE, 0, 0,
                                kDisplayWidth, kDisplayHeight, window, nullptr, instance, nullptr);
  ShowWindow(displayWindow, SW_SHOW);
  if (window == nullptr) return FALSE;
  // A picture or frame block that could not be allocated before the window existed.
  if (heapAllocFailed != 0) SetWindowTextA(window, heapAllocFailureText);
  mainWindow = window;
  ShowWindow(window, showMode);
  UpdateWindow(window);
  return TRUE;
}
