// Mask and alignment-mark import, the darkness threshold and the target pattern.
#include "pattern/mask_import.h"

#include <gmock/gmock.h>

#include "app/command_dispatch.h"
#include "pattern/line_editing.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

namespace {

constexpr uint32_t kBlack = 0xFF000000;
constexpr uint32_t kWhitePixel = 0xFFFFFFFF;

class MaskImport : public PatternTest {
 protected:
  // A picture file at path; the operator picks it in the next file dialog.
  static void offerPicture(const std::wstring& path, const RecordedPicture& picture) {
    recordedRegisterPicture(path, picture);
    recordedQueueFileChoice(path);
  }
};

// A sum of 127 is dark and 128 bright; of the 2000 x 2000 render only the top-left sample
// of each 2 x 2 block counts, so a 2000-wide picture's odd columns are never sampled.
TEST_F(MaskImport, TheThresholdTakesTheTopLeftSampleOfEach2x2Block) {
  recordedRegisterPicture(L"sums.png", pictureOf(2, 1, {0xFF2A2A2B, 0xFF2A2B2B}));
  renderMaskPattern(false, L"sums.png", maskImage);
  EXPECT_EQ(getRed(maskImage, 499, 999), 0);
  EXPECT_EQ(getRed(maskImage, 500, 0), 255);
  EXPECT_EQ(station.cellCount, 500 * 1000);
  std::vector<uint32_t> stripes(2000 * 2);
  for (size_t i = 0; i < stripes.size(); ++i) stripes[i] = i % 2 == 1 ? kBlack : kWhitePixel;
  recordedRegisterPicture(L"stripes.png", pictureOf(2000, 2, stripes));
  renderMaskPattern(false, L"stripes.png", maskImage);
  EXPECT_EQ(station.cellCount, 0);
}

// "Import Image" shows the picked picture over the whole writing area (where it lies is
// the display's story, writing_simulation_test); cancelled, it changes nothing, and
// "Mask Pattern" before any import does nothing either.
TEST_F(MaskImport, ImportImageTakesThePickedPictureAndShowsTheWholeArea) {
  station.magnification = 2;
  station.zoom = 3.0;
  dispatchCommand(IDM_IMPORT_IMAGE);
  dispatchCommand(IDM_MASK_PATTERN);
  EXPECT_DOUBLE_EQ(station.zoom, 3.0);
  EXPECT_TRUE(recordedDisplayCalls().empty());
  offerPicture(L"C:\\masks\\corner.png",
               pictureOf(2, 2, {kBlack, kWhitePixel, kWhitePixel, kWhitePixel}));
  dispatchCommand(IDM_IMPORT_IMAGE);
  EXPECT_DOUBLE_EQ(station.zoom, 0.5);
  EXPECT_TRUE(hasLine("status: File:C:\\masks\\corner.png"));
  paintPicture(maskImage, 0, 0, 1000, 1000, 128);
  dispatchCommand(IDM_MASK_PATTERN);
  EXPECT_EQ(station.cellCount, 250000);
  EXPECT_EQ(getRed(maskImage, 10, 990), 0);
}

// The target is the union of the dark parts of both pictures, the mask's only while its
// box is checked and until it is erased.
TEST_F(MaskImport, TheTargetIsTheUnionOfTheCheckedPictures) {
  paintPicture(maskImage, 0, 0, 10, 10, 0);
  paintPicture(alignmentMarkImage, 990, 990, 1000, 1000, 0);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 200);
  EXPECT_EQ(getCell(targetPattern, 5, 5), kDarkCell);
  EXPECT_EQ(getCell(targetPattern, 995, 995), kDarkCell);
  dispatchCommand(IDC_MASK_LAYER);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 100) << "mask box off";
  dispatchCommand(IDC_MASK_LAYER);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 200) << "mask box on again";
  dispatchCommand(IDM_ERASE_MASK_PATTERN);
  dispatchCommand(IDM_SHOW_TARGET_PATTERN);
  EXPECT_EQ(station.cellCount, 100) << "mask erased";
  EXPECT_EQ(getCell(targetPattern, 995, 995), kDarkCell);
}

// The picture buttons draw the held pictures again at the present zoom; with none held
// they wipe the writing area white and capture it white, as an import of nothing does.
TEST_F(MaskImport, ThePictureButtonsRedrawTheHeldPicturesWithoutResettingTheZoom) {
  recordedRegisterPicture(L"mark.png", pictureOf(1, 1, {kBlack}));
  maskPicturePath = L"mark.png";
  station.zoom = 2.0;
  dispatchCommand(IDC_SHOW_MASK_FILE);
  EXPECT_EQ(getRed(maskImage, 300, 300), 0);
  paintPicture(alignmentMarkImage, 0, 0, 10, 10, 0);
  dispatchCommand(IDC_ALIGN_MARK);
  EXPECT_DOUBLE_EQ(station.zoom, 2.0);
  EXPECT_EQ(getRed(alignmentMarkImage, 5, 5), 255);
  EXPECT_TRUE(hasLine("rect 113,11,1119,1017 pen ffffff fill ffffff", recordedDisplayCalls()));
}

// Neither the pictures nor the line list change under a running operation.
TEST_F(MaskImport, PatternAndLineCommandsAreIgnoredWhileAnOperationRuns) {
  recordedRegisterPicture(L"black.png", pictureOf(1, 1, {kBlack}));
  maskPicturePath = alignmentMarkPicturePath = L"black.png";
  linePattern.segments = {{0, 0, 10, 0, 3}};
  linePattern.erasing = 1;
  writingActive = 1;
  recordedQueueFileChoice(L"black.png");
  for (int id : {IDM_IMPORT_IMAGE, IDM_IMPORT_ALIGNMENT_MARK, IDM_MASK_PATTERN, IDC_ALIGN_MARK,
                 IDC_SHOW_MASK_FILE, IDM_SHOW_TARGET_PATTERN, IDM_SIMULATE_WRITING,
                 IDM_FINAL_PATTERN, IDM_ERASE_MASK_PATTERN, IDM_FIND_EDGES, IDM_GROUPING,
                 IDM_DELETE_ALL_LINES, IDM_IMPORT_LINE_PATTERNS}) {
    dispatchCommand(id);
  }
  leftClick({620, 514});  // the eraser on the line
  EXPECT_TRUE(recordedDisplayCalls().empty());
  EXPECT_TRUE(recordedCalls().empty());
  EXPECT_EQ(getRed(maskImage, 300, 300), 255);
  EXPECT_EQ(linePattern.segments.size(), 1u);
}

// The stores' accessors never refuse a place: out of range is the nearest edge.
TEST_F(MaskImport, OutOfRangePlacesAreTheNearestEdgeCellOrPixel) {
  setCell(finePattern, -5, 2000, kDarkCell);
  EXPECT_EQ(getCell(finePattern.cells, 1000, 1000, 0, 999), kDarkCell);
  setRed(maskImage, 999, 0, 42);
  EXPECT_EQ(getRed(maskImage, 1000, -3), 42);
}

// Row r of the progress raster is drawn at 1000 - r from the display's corner: row 0
// falls below the picture.
TEST_F(MaskImport, FinalPatternShowsTheProgressRasterOverAWhiteDisplay) {
  setCell(finalPattern, 3, 1, kDarkCell);
  dispatchCommand(IDM_FINAL_PATTERN);
  EXPECT_EQ(recordedScreenPixel(3, 999).red, 0);
  EXPECT_EQ(recordedScreenPixel(4, 999).red, 255);
  EXPECT_EQ(recordedScreenPixel(1100, 1020).red, 255);
}

}  // namespace
