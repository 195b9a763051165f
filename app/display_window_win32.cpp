// The display window procedure: see display_window_win32.h.
#include "app/display_window_win32.h"

#include <windowsx.h>

#include "app/shell_paint_win32.h"

namespace {

void onPaint(HWND window) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  paintDisplayWindow(dc);
  EndPaint(window, &paint);
}

}  // namespace

LRESULT CALLBACK displayWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    HANDLE_MSG(window, WM_PAINT, onPaint);
    default: return DefWindowProcW(window, message, wParam, lParam);
  }
}
