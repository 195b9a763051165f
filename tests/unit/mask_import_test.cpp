// Mask and alignment-mark import, the darkness threshold and the target pattern.
#include "pattern/mask_import.h"

#include <gmock/gmock.h>

#include "app/command_dispatch.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

namespace {

constexpr uint32_t kBlack = 0xFF000000;
constexpr uint32_t kWhitePixel = 0xFFFFFFFF;

class MaskImport : public PatternTest {
 protected:
  // A picture file at path; the operator picks it in the next file dialog.
  void offerPicture(const std::wstring& path, const RecordedPicture& picture) {
    recordedRegisterPicture(path, picture);
    recordedQueueFileChoice(path);
  }
  static bool hasDisplayCall(const std::string& call) {
    return hasLine(call, recordedDisplayCalls());
  }
};

TEST_F(MaskImport, ASumOf127IsDarkAnd128BrightAndTransparentIsBright) {
  // Left half (42, 42, 43), right half (42, 43, 43).
  recordedRegisterPicture(L"sums.png", pictureOf(2, 1, {0xFF2A2A2B, 0xFF2A2B2B}));
  renderMaskPattern(false, L"sums.png", maskImage);
  EXPECT_EQ(getRed(maskImage, 499, 999), 0);
  EXPECT_EQ(getRed(maskImage, 500, 0), 255);
  EXPECT_EQ(station.cellCount, 500 * 1000);
  recordedRegisterPicture(L"clear.png", pictureOf(2, 1, {0x00000000, kBlack}));
  renderMaskPattern(false, L"clear.png", maskImage);
  EXPECT_EQ(getBlue(maskImage, 100, 100), 255);
  EXPECT_EQ(getBlue(maskImage, 900, 100), 0);
}

TEST_F(MaskImport, OnlyTheTopLeftSampleOfEach2x2BlockCounts) {
  // 2000 x 2000 render of a 4 x 4 picture: each picture pixel is 500 x 500 samples. A
  // picture of 2000 x 2000 pixels would be sampled at even rows and columns only.
  RecordedPicture stripes{2000, 2, std::vector<uint8_t>(2000 * 2 * 4, 0xFF)};
  for (int x = 1; x < 2000; x += 2) {
    for (int y = 0; y < 2; ++y) {
      uint8_t* pixel = &stripes.pixels[(static_cast<size_t>(y) * 2000 + x) * 4];
      pixel[0] = pixel[1] = pixel[2] = 0;  // odd columns black
    }
  }
  recordedRegisterPicture(L"stripes.png", stripes);
  renderMaskPattern(false, L"stripes.png", maskImage);
  EXPECT_EQ(station.cellCount, 0);  // the black columns are never sampled
}

TEST_F(MaskImport, APureBlackMaskGivesAMillionDarkCells) {
  offerPicture(L"black.png", pictureOf(1, 1, {kBlack}));
  dispatchCommand(IDM_IMPORT_IMAGE);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(darkCells(targetPattern), 1000000);
}

TEST_F(MaskImport, ImportImageShowsThePictureStretchedOverTheWritingArea) {
  station.magnification = 2;
  station.zoom = 3.0;
  offerPicture(L"C:\\masks\\corner.png",
               pictureOf(2, 2, {kBlack, kWhitePixel, kWhitePixel, kWhitePixel}));
  dispatchCommand(IDM_IMPORT_IMAGE);
  EXPECT_DOUBLE_EQ(station.zoom, 0.5);
  EXPECT_TRUE(hasLine("status: File:C:\\masks\\corner.png"));
  EXPECT_TRUE(hasDisplayCall("blit display 116,14"));
  // The top-left quarter is dark: rows are bottom-up, so it is rows 500..999.
  EXPECT_EQ(getRed(maskImage, 499, 500), 0);
  EXPECT_EQ(getRed(maskImage, 500, 999), 255);
  EXPECT_EQ(getRed(maskImage, 0, 499), 255);
}

TEST_F(MaskImport, ACancelledDialogOrMaskPatternBeforeAnyImportDoesNothing) {
  maskPicturePath.clear();
  station.zoom = 2.0;
  dispatchCommand(IDM_IMPORT_IMAGE);
  dispatchCommand(IDM_MASK_PATTERN);
  EXPECT_TRUE(maskPicturePath.empty());
  EXPECT_DOUBLE_EQ(station.zoom, 2.0);
  EXPECT_TRUE(recordedDisplayCalls().empty());
}

TEST_F(MaskImport, MaskPatternThresholdsTheHeldPictureAndShowsTheRender) {
  offerPicture(L"half.png", pictureOf(1, 2, {kBlack, kWhitePixel}));
  dispatchCommand(IDM_IMPORT_IMAGE);
  paintPicture(maskImage, 0, 0, 1000, 1000, 128);  // the threshold writes every pixel anew
  dispatchCommand(IDM_MASK_PATTERN);
  EXPECT_EQ(station.cellCount, 500000);
  EXPECT_TRUE(hasDisplayCall("stretch display 116,14,1116,1014"));
  EXPECT_EQ(getRed(maskImage, 10, 990), 0);
}

// The target is the union of the dark parts of both pictures, the mask's only while its
// box is checked and until it is erased.
TEST_F(MaskImport, TheTargetIsTheUnionOfTheCheckedPictures) {
  paintPicture(maskImage, 0, 0, 10, 10, 0);
  paintPicture(alignmentMarkImage, 990, 990, 1000, 1000, 0);
  buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
  EXPECT_EQ(station.cellCount, 200);
  EXPECT_EQ(getCell(targetPattern, 5, 5), kDarkCell);
  EXPECT_EQ(getCell(targetPattern, 995, 995), kDarkCell);
  dispatchCommand(IDC_MASK_LAYER);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 100) << "mask box off";
  EXPECT_EQ(getCell(targetPattern, 5, 5), kBrightCell);
  dispatchCommand(IDC_MASK_LAYER);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 200) << "mask box on again";
  dispatchCommand(IDM_ERASE_MASK_PATTERN);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 100) << "mask erased";
  EXPECT_EQ(getCell(targetPattern, 995, 995), kDarkCell);
  EXPECT_TRUE(hasDisplayCall("blit main 116,14"));
}

TEST_F(MaskImport, ThePictureButtonsRedrawTheHeldPicturesWithoutResettingTheZoom) {
  recordedRegisterPicture(L"mark.png", pictureOf(1, 1, {kBlack}));
  alignmentMarkPicturePath = L"mark.png";
  station.zoom = 2.0;
  dispatchCommand(IDC_ALIGN_MARK);
  EXPECT_DOUBLE_EQ(station.zoom, 2.0);
  EXPECT_EQ(getRed(alignmentMarkImage, 300, 300), 0);
  maskPicturePath = L"mark.png";
  dispatchCommand(IDC_SHOW_MASK_FILE);
  EXPECT_EQ(getRed(maskImage, 300, 300), 0);
  alignmentMarkPicturePath.clear();
  maskPicturePath.clear();
}

TEST_F(MaskImport, PatternCommandsAreIgnoredWhileAnOperationRuns) {
  recordedRegisterPicture(L"black.png", pictureOf(1, 1, {kBlack}));
  maskPicturePath = L"black.png";
  alignmentMarkPicturePath = L"black.png";
  writingActive = 1;
  recordedQueueFileChoice(L"black.png");
  for (int id : {IDM_IMPORT_IMAGE, IDM_IMPORT_ALIGNMENT_MARK, IDM_MASK_PATTERN, IDC_ALIGN_MARK,
                 IDC_SHOW_MASK_FILE, IDM_SHOW_TARGET_PATTERN, IDM_SIMULATE_WRITING,
                 IDM_FINAL_PATTERN, IDM_ERASE_MASK_PATTERN}) {
    dispatchCommand(id);
  }
  EXPECT_TRUE(recordedDisplayCalls().empty());
  EXPECT_TRUE(recordedCalls().empty());
  EXPECT_EQ(getRed(maskImage, 300, 300), 255);
  maskPicturePath.clear();
  alignmentMarkPicturePath.clear();
}

TEST_F(MaskImport, FinalPatternShowsTheProgressRasterOverAWhiteDisplay) {
  setCell(finalPattern, 3, 0, kDarkCell);
  dispatchCommand(IDM_FINAL_PATTERN);
  EXPECT_TRUE(hasDisplayCall("rect 0,0,1232,1028 pen ffffff fill ffffff"));
  EXPECT_TRUE(hasDisplayCall("blit display 0,0"));
}

}  // namespace
