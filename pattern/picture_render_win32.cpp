// The picture-file seam on GDI and GDI+: a memory context with a 32-bit bitmap of the
// asked size, painted white with the stock white brush, the picture drawn stretched by a
// GDI+ Graphics on that context, then read back with GetDIBits.
#include <windows.h>
// objidl.h is left out by WIN32_LEAN_AND_MEAN, and GDI+ needs it.
#include <objidl.h>

#include <algorithm>
#include <cstring>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include "camera/display_surface_win32.h"
#include "pattern/picture_render.h"

bool renderPictureFile(const std::wstring& path, int width, int height, uint8_t* pixels) {
  const size_t bytes = static_cast<size_t>(width) * static_cast<size_t>(height) * 4;
  std::memset(pixels, 0xFF, bytes);
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  ReleaseDC(nullptr, screen);
  bool drawn = false;
  if (memory != nullptr && bitmap != nullptr) {
    HGDIOBJ oldBitmap = SelectObject(memory, bitmap);
    HGDIOBJ oldPen = SelectObject(memory, GetStockObject(WHITE_PEN));
    HGDIOBJ oldBrush = SelectObject(memory, GetStockObject(WHITE_BRUSH));
    Rectangle(memory, 0, 0, width, height);
    {
      Gdiplus::Graphics graphics(memory);
      Gdiplus::Image picture(path.c_str(), FALSE);
      if (picture.GetLastStatus() == Gdiplus::Ok && picture.GetWidth() > 0) {
        const Gdiplus::Rect target(0, 0, width, height);
        drawn = graphics.DrawImage(&picture, target, 0, 0, static_cast<INT>(picture.GetWidth()),
                                   static_cast<INT>(picture.GetHeight()),
                                   Gdiplus::UnitPixel) == Gdiplus::Ok;
      }
    }
    SelectObject(memory, oldBrush);
    SelectObject(memory, oldPen);
    SelectObject(memory, oldBitmap);
    BITMAPINFO info = headerFor(width, height);
    GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels, &info, DIB_RGB_COLORS);
  }
  if (bitmap != nullptr) DeleteObject(bitmap);
  if (memory != nullptr) DeleteDC(memory);
  return drawn;
}
