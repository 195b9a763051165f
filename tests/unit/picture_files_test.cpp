// Picture files in the run folder and unique names.
#include "camera/picture_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "camera_test_support.h"

namespace {

namespace fs = std::filesystem;
using PictureFiles = CameraTest;

TEST_F(PictureFiles, SavedViewsAreOpticPicturesNumberedFromZeroInTheRunFolder) {
  opticNumber = 0;
  EXPECT_EQ(SaveViewImage(dataPaths, SurfaceWindow::Main), 1);
  EXPECT_TRUE(fs::exists(fs::path(dataPaths.runFolder) / "optic(0).jpg"));
  EXPECT_EQ(opticNumber, 1);
}

TEST_F(PictureFiles, UniqueNamesCountOnFromZero) {
  ensureRunFolder(dataPaths, 0);
  const fs::path folder(dataPaths.runFolder);
  EXPECT_EQ(fs::path(UniqueFileName(dataPaths, L"LinePattern", L"txt")).filename(),
            "LinePattern.txt");
  std::ofstream(folder / "LinePattern.txt") << "x";
  std::ofstream(folder / "LinePattern_0.txt") << "x";
  EXPECT_EQ(fs::path(UniqueFileName(dataPaths, L"LinePattern", L"txt")).filename(),
            "LinePattern_1.txt");
}

}  // namespace
