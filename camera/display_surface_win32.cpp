// The display-drawing seam on GDI and GDI+. The display window keeps a back buffer of
// its whole client area: every picture copied onto it, or onto the main window over it,
// also lands in that buffer, so its paint handler can always show the last picture.
#include <windows.h>
// objidl.h is left out by WIN32_LEAN_AND_MEAN, and GDI+ needs it.
#include <objidl.h>

#include <algorithm>
#include <vector>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include "camera/display_surface.h"
#include "camera/display_surface_win32.h"

struct Canvas {
  SurfaceWindow window;
  bool direct = false;
  HWND hwnd = nullptr;
  HDC windowDc = nullptr;  // direct canvases draw here
  // Where a direct canvas's drawing lands in the back buffer, and the display window to
  // repaint: found once for the canvas, as the writing engines draw pixel by pixel and
  // finding the windows is a search through the thread's windows.
  POINT backOffset{0, 0};
  HWND display = nullptr;
  HBITMAP bitmap = nullptr;
  HDC memory = nullptr;
  HGDIOBJ previous = nullptr;
  int width = 0;
  int height = 0;
};

namespace {

const wchar_t kDisplayClass[] = L"Display Window";

HBITMAP backBitmap = nullptr;
HDC backDc = nullptr;

struct MainSearch {
  HWND found = nullptr;
};

BOOL CALLBACK findMain(HWND hwnd, LPARAM context) {
  if (FindWindowExW(hwnd, nullptr, kDisplayClass, nullptr) != nullptr) {
    reinterpret_cast<MainSearch*>(context)->found = hwnd;
    return FALSE;
  }
  return TRUE;
}

// The main window is the top-level window of this thread that holds the display window.
// The two are kept while the display is still the main window's child: the writing
// engines draw cell by cell, and the search goes through every window of the thread.
struct ShellWindows {
  HWND main = nullptr;
  HWND display = nullptr;
};

const ShellWindows& shellWindows() {
  static ShellWindows found;
  if (found.display != nullptr && IsWindow(found.display) && IsWindow(found.main) &&
      GetParent(found.display) == found.main)
    return found;
  MainSearch search;
  EnumThreadWindows(GetCurrentThreadId(), findMain, reinterpret_cast<LPARAM>(&search));
  found.main = search.found;
  found.display =
      found.main != nullptr ? FindWindowExW(found.main, nullptr, kDisplayClass, nullptr) : nullptr;
  return found;
}

HWND mainWindow() { return shellWindows().main; }
HWND displayWindow() { return shellWindows().display; }

HWND windowOf(SurfaceWindow window) {
  return window == SurfaceWindow::Main ? mainWindow() : displayWindow();
}

// Where the display window's client area starts in the main window's client area.
POINT displayOrigin() {
  POINT origin{0, 0};
  HWND display = displayWindow();
  if (display != nullptr) MapWindowPoints(display, GetParent(display), &origin, 1);
  return origin;
}

HDC backBuffer() {
  if (backDc != nullptr) return backDc;
  HDC screen = GetDC(nullptr);
  backBitmap = CreateCompatibleBitmap(screen, 1232, 1028);
  backDc = CreateCompatibleDC(screen);
  ReleaseDC(nullptr, screen);
  if (backBitmap == nullptr || backDc == nullptr) return nullptr;
  SelectObject(backDc, backBitmap);
  PatBlt(backDc, 0, 0, 1232, 1028, BLACKNESS);
  return backDc;
}

// The back-buffer offset of a drawing made at (0, 0) of window.
POINT backOffset(SurfaceWindow window) {
  POINT offset{0, 0};
  if (window == SurfaceWindow::Main) {
    POINT origin = displayOrigin();
    offset = {-origin.x, -origin.y};
  }
  return offset;
}

void showBackBuffer() {
  HWND display = displayWindow();
  if (display == nullptr || backDc == nullptr) return;
  HDC dc = GetDC(display);
  BitBlt(dc, 0, 0, 1232, 1028, backDc, 0, 0, SRCCOPY);
  ReleaseDC(display, dc);
}

COLORREF colourOf(Rgb rgb) { return RGB(rgb.red, rgb.green, rgb.blue); }

// Runs draw on the canvas's context; a direct canvas draws on its window and on the
// part of the back buffer under it.
template <typename Draw>
void drawOn(Canvas* canvas, Draw draw) {
  if (!canvas->direct) {
    if (canvas->memory != nullptr) draw(canvas->memory);
    return;
  }
  if (canvas->windowDc != nullptr) draw(canvas->windowDc);
  HDC back = backBuffer();
  if (back == nullptr) return;
  POINT old;
  SetViewportOrgEx(back, canvas->backOffset.x, canvas->backOffset.y, &old);
  draw(back);
  SetViewportOrgEx(back, old.x, old.y, nullptr);
  if (canvas->display != nullptr) InvalidateRect(canvas->display, nullptr, FALSE);
}

}  // namespace

BITMAPINFO headerFor(int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;  // positive: rows bottom-up
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

int FindEncoder(const wchar_t* mimeType, CLSID& clsid) {
  UINT count = 0;
  UINT bytes = 0;
  Gdiplus::GetImageEncodersSize(&count, &bytes);
  if (bytes == 0) return -1;
  std::vector<unsigned char> block(bytes);
  auto* encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(block.data());
  Gdiplus::GetImageEncoders(count, bytes, encoders);
  for (UINT i = 0; i < count; ++i) {
    if (wcscmp(encoders[i].MimeType, mimeType) == 0) {
      clsid = encoders[i].Clsid;
      return static_cast<int>(i);
    }
  }
  return 0;
}

void paintDisplayBackBuffer(HDC dc) {
  HDC back = backBuffer();
  if (back != nullptr) BitBlt(dc, 0, 0, 1232, 1028, back, 0, 0, SRCCOPY);
}

Canvas* canvasNew(SurfaceWindow window) {
  Canvas* canvas = new Canvas;
  canvas->window = window;
  canvas->hwnd = windowOf(window);
  return canvas;
}

Canvas* canvasOnWindow(SurfaceWindow window) {
  Canvas* canvas = canvasNew(window);
  canvas->direct = true;
  if (canvas->hwnd != nullptr) canvas->windowDc = GetDC(canvas->hwnd);
  canvas->backOffset = backOffset(window);
  canvas->display = displayWindow();
  return canvas;
}

bool canvasCreateBitmap(Canvas* canvas, int width, int height) {
  if (canvas->bitmap != nullptr) DeleteObject(canvas->bitmap);
  HDC dc = GetDC(canvas->hwnd);
  canvas->bitmap = CreateCompatibleBitmap(dc, width, height);
  ReleaseDC(canvas->hwnd, dc);
  canvas->width = width;
  canvas->height = height;
  return canvas->bitmap != nullptr;
}

bool canvasCreateContext(Canvas* canvas) {
  if (canvas->memory != nullptr) return true;
  HDC dc = GetDC(canvas->hwnd);
  canvas->memory = CreateCompatibleDC(dc);
  ReleaseDC(canvas->hwnd, dc);
  return canvas->memory != nullptr;
}

bool canvasSetPixels(Canvas* canvas, const uint8_t* pixels, int width, int height) {
  if (canvas->bitmap == nullptr || canvas->memory == nullptr) return false;
  BITMAPINFO info = headerFor(width, height);
  return SetDIBits(canvas->memory, canvas->bitmap, 0, static_cast<UINT>(height), pixels, &info,
                   DIB_RGB_COLORS) != 0;
}

void canvasSelectBitmap(Canvas* canvas) {
  if (canvas->memory != nullptr && canvas->bitmap != nullptr) {
    canvas->previous = SelectObject(canvas->memory, canvas->bitmap);
  }
}

void canvasRestoreSelection(Canvas* canvas) {
  if (canvas->memory != nullptr && canvas->previous != nullptr) {
    SelectObject(canvas->memory, canvas->previous);
    canvas->previous = nullptr;
  }
}

void canvasRectangle(Canvas* canvas, const IntRect& rect, Rgb pen, const Rgb* fill) {
  drawOn(canvas, [&](HDC dc) {
    HPEN line = CreatePen(PS_SOLID, 1, colourOf(pen));
    HBRUSH brush = fill != nullptr ? CreateSolidBrush(colourOf(*fill))
                                   : static_cast<HBRUSH>(GetStockObject(HOLLOW_BRUSH));
    HGDIOBJ oldPen = SelectObject(dc, line);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
    SelectObject(dc, oldBrush);
    SelectObject(dc, oldPen);
    DeleteObject(line);
    if (fill != nullptr) DeleteObject(brush);
  });
}

void canvasEllipse(Canvas* canvas, const IntRect& rect, Rgb pen) {
  drawOn(canvas, [&](HDC dc) {
    HPEN line = CreatePen(PS_SOLID, 1, colourOf(pen));
    HGDIOBJ oldPen = SelectObject(dc, line);
    HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
    Ellipse(dc, rect.left, rect.top, rect.right, rect.bottom);
    SelectObject(dc, oldBrush);
    SelectObject(dc, oldPen);
    DeleteObject(line);
  });
}

void canvasText(Canvas* canvas, int x, int y, const std::string& text, const Rgb* colour) {
  drawOn(canvas, [&](HDC dc) {
    if (colour == nullptr) {
      TextOutA(dc, x, y, text.c_str(), static_cast<int>(text.size()));
      return;
    }
    const int oldMode = SetBkMode(dc, TRANSPARENT);
    const COLORREF oldColour = SetTextColor(dc, colourOf(*colour));
    TextOutA(dc, x, y, text.c_str(), static_cast<int>(text.size()));
    SetTextColor(dc, oldColour);
    SetBkMode(dc, oldMode);
  });
}

void canvasSetPixel(Canvas* canvas, int x, int y, Rgb colour) {
  drawOn(canvas, [&](HDC dc) { SetPixel(dc, x, y, colourOf(colour)); });
}

void canvasLine(Canvas* canvas, IntPoint from, IntPoint to, int penWidth, Rgb colour) {
  drawOn(canvas, [&](HDC dc) {
    HPEN line = CreatePen(PS_SOLID, penWidth, colourOf(colour));
    HGDIOBJ oldPen = SelectObject(dc, line);
    MoveToEx(dc, from.x, from.y, nullptr);
    LineTo(dc, to.x, to.y);
    SelectObject(dc, oldPen);
    DeleteObject(line);
  });
}

void canvasInvertLine(Canvas* canvas, IntPoint from, IntPoint to) {
  drawOn(canvas, [&](HDC dc) {
    const int oldMode = SetROP2(dc, R2_NOT);
    HGDIOBJ oldPen = SelectObject(dc, GetStockObject(BLACK_PEN));
    MoveToEx(dc, from.x, from.y, nullptr);
    LineTo(dc, to.x, to.y);
    SelectObject(dc, oldPen);
    SetROP2(dc, oldMode);
  });
}

bool canvasBlit(Canvas* canvas, int x, int y) {
  if (canvas->memory == nullptr || canvas->bitmap == nullptr) return false;
  // The live canvas outlives window creation, so the window is looked up every time.
  canvas->hwnd = windowOf(canvas->window);
  bool copied = true;
  if (canvas->hwnd != nullptr) {
    HDC dc = GetDC(canvas->hwnd);
    copied = BitBlt(dc, x, y, canvas->width, canvas->height, canvas->memory, 0, 0, SRCCOPY) != 0;
    ReleaseDC(canvas->hwnd, dc);
  }
  HDC back = backBuffer();
  if (copied && back != nullptr) {
    const POINT offset = backOffset(canvas->window);
    BitBlt(back, x + offset.x, y + offset.y, canvas->width, canvas->height, canvas->memory, 0, 0,
           SRCCOPY);
    showBackBuffer();
  }
  return copied;
}

bool canvasStretch(Canvas* canvas, const IntRect& rect) {
  if (canvas->memory == nullptr || canvas->bitmap == nullptr) return false;
  const int width = rect.right - rect.left;
  const int height = rect.bottom - rect.top;
  canvas->hwnd = windowOf(canvas->window);
  bool copied = true;
  if (canvas->hwnd != nullptr) {
    HDC dc = GetDC(canvas->hwnd);
    SetStretchBltMode(dc, HALFTONE);
    copied = StretchBlt(dc, rect.left, rect.top, width, height, canvas->memory, 0, 0, canvas->width,
                        canvas->height, SRCCOPY) != 0;
    ReleaseDC(canvas->hwnd, dc);
  }
  HDC back = backBuffer();
  if (copied && back != nullptr) {
    const POINT offset = backOffset(canvas->window);
    SetStretchBltMode(back, HALFTONE);
    StretchBlt(back, rect.left + offset.x, rect.top + offset.y, width, height, canvas->memory, 0, 0,
               canvas->width, canvas->height, SRCCOPY);
    showBackBuffer();
  }
  return copied;
}

bool canvasCopyFromWindow(Canvas* canvas) {
  if (canvas->memory == nullptr || canvas->bitmap == nullptr) return false;
  HDC dc = GetDC(canvas->hwnd);
  const bool copied =
      BitBlt(canvas->memory, 0, 0, canvas->width, canvas->height, dc, 0, 0, SRCCOPY) != 0;
  ReleaseDC(canvas->hwnd, dc);
  return copied;
}

bool canvasSavePng(Canvas* canvas, const std::filesystem::path& file) {
  if (canvas->bitmap == nullptr) return false;
  Gdiplus::Bitmap picture(canvas->bitmap, nullptr);
  CLSID png{};
  FindEncoder(L"image/png", png);
  return picture.Save(file.wstring().c_str(), &png, nullptr) == Gdiplus::Ok;
}

void canvasDeleteBitmap(Canvas* canvas) {
  if (canvas->bitmap != nullptr) DeleteObject(canvas->bitmap);
  canvas->bitmap = nullptr;
}

void canvasFree(Canvas* canvas) {
  canvasRestoreSelection(canvas);
  if (canvas->memory != nullptr) DeleteDC(canvas->memory);
  canvasDeleteBitmap(canvas);
  if (canvas->windowDc != nullptr) ReleaseDC(canvas->hwnd, canvas->windowDc);
  delete canvas;
}

namespace {

double microsecondsSince(const LARGE_INTEGER& start) {
  LARGE_INTEGER now, frequency;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&frequency);
  return double(now.QuadPart - start.QuadPart) * 1e6 / double(frequency.QuadPart);
}

// Marks a stroke of cells along the display's top rows as the writing engines mark written
// cells (a canvas on the window a cell, factor x factor pixels), each pixel in the colour
// the back buffer already holds there; microseconds a cell.
double strokeCellUs(SurfaceWindow window, HDC back, int factor, int cells) {
  const POINT offset = backOffset(window);
  std::vector<Rgb> colours;
  for (int y = 0; y < factor; ++y) {
    for (int x = 0; x < factor * cells; ++x) {
      const COLORREF shown = GetPixel(back, x, y);
      colours.push_back({GetRValue(shown), GetGValue(shown), GetBValue(shown)});
    }
  }
  LARGE_INTEGER start;
  QueryPerformanceCounter(&start);
  for (int cell = 0; cell < cells; ++cell) {
    Canvas* canvas = canvasOnWindow(window);
    for (int b = 0; b < factor; ++b) {
      for (int a = 0; a < factor; ++a) {
        const int x = cell * factor + a;
        canvasSetPixel(canvas, x - offset.x, b - offset.y,
                       colours[static_cast<size_t>(b) * factor * cells + x]);
      }
    }
    canvasFree(canvas);
  }
  return microsecondsSince(start) / cells;
}

}  // namespace

DrawingCost measureDrawingCost(SurfaceWindow window) {
  DrawingCost cost;
  HDC back = backBuffer();
  if (back == nullptr || windowOf(window) == nullptr) return cost;
  // The middle of a few tries, so that a busy moment of the machine does not set the
  // forecast: canvases alone, then coarse strokes (25 pixels a cell), whose cells less
  // their canvases give the pixels.
  constexpr int kTries = 5, kCanvases = 20;
  double canvasUs[kTries], cellUs[kTries];
  for (int i = 0; i < kTries; ++i) {
    LARGE_INTEGER start;
    QueryPerformanceCounter(&start);
    for (int c = 0; c < kCanvases; ++c) canvasFree(canvasOnWindow(window));
    canvasUs[i] = microsecondsSince(start) / kCanvases;
    cellUs[i] = strokeCellUs(window, back, 5, 40);
  }
  std::sort(canvasUs, canvasUs + kTries);
  std::sort(cellUs, cellUs + kTries);
  cost.windowDcUs = canvasUs[kTries / 2];
  cost.pixelUs = std::max(0.0, (cellUs[kTries / 2] - cost.windowDcUs) / 25.0);
  return cost;
}
