// The display window procedure: see display_window_win32.h. It only cracks the mouse
// messages; what they do is display_pointer.cpp.
#include "app/display_window_win32.h"

#include <windowsx.h>

#include "app/display_pointer.h"
#include "camera/display_surface_win32.h"

namespace {

void onPaint(HWND window) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  paintDisplayBackBuffer(dc);
  EndPaint(window, &paint);
}

void onLeftButtonDown(HWND, BOOL, int x, int y, UINT) { onDisplayLeftButtonDown(x, y); }

void onRightButtonDown(HWND, BOOL, int x, int y, UINT) { onDisplayRightButtonDown(x, y); }

void onMouseMove(HWND, int x, int y, UINT) {
  const DisplayCursor cursor = onDisplayMouseMove(x, y);
  LPCWSTR shape = cursor == DisplayCursor::Hand    ? IDC_HAND
                  : cursor == DisplayCursor::Cross ? IDC_CROSS
                                                   : IDC_ARROW;
  SetCursor(LoadCursorW(nullptr, shape));
}

}  // namespace

LRESULT CALLBACK displayWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    HANDLE_MSG(window, WM_PAINT, onPaint);
    HANDLE_MSG(window, WM_LBUTTONDOWN, onLeftButtonDown);
    HANDLE_MSG(window, WM_RBUTTONDOWN, onRightButtonDown);
    HANDLE_MSG(window, WM_MOUSEMOVE, onMouseMove);
    case WM_MOUSEWHEEL: onDisplayWheel(GET_WHEEL_DELTA_WPARAM(wParam)); return 0;
    default: return DefWindowProcW(window, message, wParam, lParam);
  }
}
