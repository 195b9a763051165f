// Picture files in the run folder, unique names and the file-open question.
#include "camera/picture_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "camera/live_render.h"
#include "camera_test_support.h"
#include "station_fixture.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class PictureFiles : public StationTest {
 protected:
  void SetUp() override {
    StationTest::SetUp();
    resetCameraWorld();
  }
};

TEST_F(PictureFiles, TheFirstOpticPictureIsOptic0HoldingPngData) {
  opticNumber = 0;
  EXPECT_EQ(SaveViewImage(dataPaths, SurfaceWindow::Main), 1);
  const fs::path file = fs::path(dataPaths.runFolder) / "optic(0).jpg";
  std::ifstream in(file, std::ios::binary);
  char signature[8] = {};
  in.read(signature, 8);
  EXPECT_EQ(std::string(signature, 8), std::string("\x89PNG\r\n\x1a\n", 8));
  EXPECT_EQ(opticNumber, 1);
}

TEST_F(PictureFiles, ASavedSnapshotIsTheNextCameraPictureWithTheTargetBox) {
  cameraNumber = 0;
  RenderSnapshot(displayFrame.pixels, 1232, 1028, 1);
  const Lines& calls = recordedDisplayCalls();
  EXPECT_NE(std::find(calls.begin(), calls.end(), "rect 492,411,739,616 pen 00ff00 hollow"),
            calls.end());
  EXPECT_NE(std::find(calls.begin(), calls.end(), "save camera(0).jpg"), calls.end());
  EXPECT_EQ(cameraNumber, 1);
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

TEST_F(PictureFiles, TheFileQuestionGivesTheChosenPathOrLeavesItOnCancel) {
  std::wstring path = L"before";
  EXPECT_EQ(AskFileToOpen(path), 1);
  EXPECT_EQ(path, L"before");
  recordedQueueFileChoice(L"/tmp/mask.png");
  AskFileToOpen(path);
  EXPECT_EQ(path, L"/tmp/mask.png");
  EXPECT_TRUE(recordedCall("status: File:/tmp/mask.png"));
}

}  // namespace
