// Importing real PNG files through GDI+: the threshold render of an opaque and of a
// transparent background, the target's orientation, and a file that does not load.
#include <objidl.h>
#include <windows.h>

#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "app/station.h"
#include "camera/display_surface_win32.h"
#include "pattern/mask_import.h"

namespace {

// A 100 x 100 PNG with a black 20 x 40 rectangle at (20, 30) over the background.
std::filesystem::path writeMask(const wchar_t* name, Gdiplus::Color background) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() / name;
  Gdiplus::Bitmap picture(100, 100, PixelFormat32bppARGB);
  {
    Gdiplus::Graphics graphics(&picture);
    graphics.Clear(background);
    Gdiplus::SolidBrush black(Gdiplus::Color(255, 0, 0, 0));
    graphics.FillRectangle(&black, 20, 30, 20, 40);
  }
  CLSID png{};
  FindEncoder(L"image/png", png);
  EXPECT_EQ(picture.Save(file.wstring().c_str(), &png, nullptr), Gdiplus::Ok);
  return file;
}

// 20 x 40 picture pixels of 100 x 100 are 200 x 400 of the 1000 x 1000 cells. GDI+
// stretches with interpolation: each edge fades over one picture pixel (10 cells) and only
// its darkest part passes the threshold, so a few cells are lost along every edge (under
// Wine 194 x 392). The picture's top row is the pattern's row 999.
TEST(MaskImportWithGdiplus, APngMaskBecomesATargetPatternOfItsDarkArea) {
  Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  ASSERT_EQ(Gdiplus::GdiplusStartup(&token, &input, nullptr), Gdiplus::Ok);
  std::memset(alignmentMarkImage.pixels, 0xFF, static_cast<size_t>(alignmentMarkImage.byteSize));
  for (Gdiplus::Color background :
       {Gdiplus::Color(255, 255, 255, 255), Gdiplus::Color(0, 0, 0, 0)}) {
    const auto file = writeMask(L"telvane_mask.png", background);
    renderMaskPattern(false, file.wstring(), maskImage);
    buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
    EXPECT_GE(station.cellCount, 190 * 390);
    EXPECT_LE(station.cellCount, 200 * 400);
    EXPECT_EQ(getCell(targetPattern, 300, 500), kDarkCell);
    EXPECT_EQ(getCell(targetPattern, 300, 250), kBrightCell);
    EXPECT_EQ(getCell(targetPattern, 100, 500), kBrightCell);
    std::filesystem::remove(file);
  }
  renderMaskPattern(false, L"Z:\\no\\such\\mask.png", maskImage);
  EXPECT_EQ(station.cellCount, 0);
  Gdiplus::GdiplusShutdown(token);
}

}  // namespace
