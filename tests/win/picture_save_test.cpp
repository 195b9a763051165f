// Saving a picture through GDI+ really writes PNG data, whatever the file's name says.
#include <objidl.h>
#include <windows.h>

#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "camera/display_surface.h"

namespace {

TEST(PictureSave, APictureSavedAsJpgNameHoldsPngData) {
  Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  ASSERT_EQ(Gdiplus::GdiplusStartup(&token, &input, nullptr), Gdiplus::Ok);
  const std::filesystem::path file = std::filesystem::temp_directory_path() / "optic(0).jpg";
  std::filesystem::remove(file);
  std::vector<uint8_t> pixels(1232 * 1028 * 4, 0x80);
  Canvas* canvas = canvasNew(SurfaceWindow::Main);
  ASSERT_TRUE(canvasCreateBitmap(canvas, 1232, 1028));
  ASSERT_TRUE(canvasCreateContext(canvas));
  ASSERT_TRUE(canvasSetPixels(canvas, pixels.data(), 1232, 1028));
  EXPECT_TRUE(canvasSavePng(canvas, file));
  canvasFree(canvas);
  Gdiplus::GdiplusShutdown(token);

  std::ifstream in(file, std::ios::binary);
  char signature[8] = {};
  in.read(signature, 8);
  EXPECT_EQ(std::string(signature, 8), std::string("\x89PNG\r\n\x1a\n", 8));
  in.close();
  std::filesystem::remove(file);
}

}  // namespace
