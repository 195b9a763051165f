// Importing a real PNG file through GDI+: the threshold render and the target pattern's
// dark count, with an opaque and with a transparent background.
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

#include "camera/display_surface_win32.h"
#include "pattern/mask_import.h"
#include "station/station.h"

namespace {

class GdiplusSession : public ::testing::Test {
 protected:
  void SetUp() override {
    Gdiplus::GdiplusStartupInput input;
    ASSERT_EQ(Gdiplus::GdiplusStartup(&token_, &input, nullptr), Gdiplus::Ok);
  }
  void TearDown() override { Gdiplus::GdiplusShutdown(token_); }

  // A 100 x 100 PNG with a black 20 x 40 rectangle at (20, 30) over the background.
  static std::filesystem::path writeMask(const wchar_t* name, Gdiplus::Color background) {
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

  ULONG_PTR token_ = 0;
};

// 20 x 40 picture pixels of 100 x 100 are 200 x 400 of the 1000 x 1000 cells. GDI+
// stretches with interpolation: each edge of the rectangle fades over one picture pixel
// (10 cells), and only its darkest part passes the threshold, so a few cells are lost
// along every edge (under Wine 194 x 392).
void expectAboutTheRectangle(int dark) {
  EXPECT_GE(dark, 190 * 390);
  EXPECT_LE(dark, 200 * 400);
}

TEST_F(GdiplusSession, APngMaskBecomesATargetPatternOfItsDarkArea) {
  const auto file = writeMask(L"telvane_mask.png", Gdiplus::Color(255, 255, 255, 255));
  renderMaskPattern(false, file.wstring(), maskImage);
  expectAboutTheRectangle(station.cellCount);
  std::memset(alignmentMarkImage.pixels, 0xFF, static_cast<size_t>(alignmentMarkImage.byteSize));
  buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
  expectAboutTheRectangle(station.cellCount);
  // The picture's top row is the pattern's row 999: (30 .. 70) from the top is rows 300..699.
  EXPECT_EQ(getCell(targetPattern, 300, 500), kDarkCell);
  EXPECT_EQ(getCell(targetPattern, 300, 250), kBrightCell);
  EXPECT_EQ(getCell(targetPattern, 100, 500), kBrightCell);
  std::filesystem::remove(file);
}

TEST_F(GdiplusSession, ATransparentBackgroundCountsAsBright) {
  const auto file = writeMask(L"telvane_clear_mask.png", Gdiplus::Color(0, 0, 0, 0));
  renderMaskPattern(false, file.wstring(), maskImage);
  expectAboutTheRectangle(station.cellCount);
  std::filesystem::remove(file);
}

TEST_F(GdiplusSession, AFileThatDoesNotLoadGivesAnAllBrightPicture) {
  renderMaskPattern(false, L"Z:\\no\\such\\mask.png", maskImage);
  EXPECT_EQ(station.cellCount, 0);
}

}  // namespace
