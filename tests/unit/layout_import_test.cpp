// "Import Layout" from the menu: the file, the dialog's choices, the held layout and the
// mask picture that "Mask Pattern" then works on; and the files it refuses. The
// rasterization itself is compared with other programs' geometry in
// tests/native/test_layout_import.py.
#include "layout_file_fixture.h"
#include "pattern/layout_raster.h"
#include "pattern_fixture.h"

namespace {

using namespace gdsii;

class LayoutImport : public PatternTest {
 protected:
  void SetUp() override {
    PatternTest::SetUp();
    heldLayout = {};
    fieldOverlapUm = 0;
  }
  void importFile(const std::string& name, const std::string& bytes, int layer = 0, int top = 0,
                  bool centre = false, const std::string& overlap = "0") {
    importLayoutFile(desktop_ / name, bytes, layer, top, centre, overlap);
  }
  static int darkPixels() {
    int dark = 0;
    for (int y = 0; y < kPatternSide; ++y)
      for (int x = 0; x < kPatternSide; ++x) dark += getRed(maskImage, x, y) == 0;
    return dark;
  }
};

const std::string kTwoTops =
    library(cell("SUB", square(10, -20, 50) + square(10, 40, 6)) + cell("TOP", reference("SUB")) +
            cell("OTHER", square(-400, -400, 20)));

// The layout lands at true scale around the writing reference (or centred on its box),
// from the top cell picked, and "Mask Pattern" takes the picture as it would a picked one.
TEST_F(LayoutImport, ALayerOfATopCellBecomesTheMaskPictureAtTrueScale) {
  station.magnification = 2;
  importFile("two.gds", kTwoTops, 0, 0, false, "12.5");
  EXPECT_EQ(recordedDialogEntries(IDC_LAYOUT_TOP_CELL), (std::vector<std::string>{"TOP", "OTHER"}));
  EXPECT_EQ(recordedDialogEntries(IDC_LAYOUT_LAYER), std::vector<std::string>{"1/0"});
  EXPECT_EQ(heldLayout.widthCells, 25);
  EXPECT_EQ(std::count(heldLayout.dark.begin(), heldLayout.dark.end(), 1), 25 * 25 + 3 * 3);
  EXPECT_EQ(heldLayout.cellUm, 2);
  EXPECT_EQ(fieldOverlapUm, 12.5);
  dispatchCommand(IDM_MASK_PATTERN);
  EXPECT_EQ(station.cellCount, 25 * 25 + 3 * 3);
  // x 10..60 um is cells 5..29 right of the reference (column 500), y -20..30 rows -10..14,
  // and the small square above it rows 20..22.
  EXPECT_EQ(getRed(maskImage, 505, 490), 0);
  EXPECT_EQ(getRed(maskImage, 529, 514), 0);
  EXPECT_EQ(getRed(maskImage, 507, 522), 0);
  EXPECT_EQ(getRed(maskImage, 504, 490) + getRed(maskImage, 530, 514) +
                getRed(maskImage, 505, 489) + getRed(maskImage, 520, 522),
            4 * 255);

  station.magnification = 1;
  importFile("two.gds", kTwoTops, 0, 1, true);
  EXPECT_EQ(darkPixels(), 20 * 20);
  EXPECT_EQ(getRed(maskImage, 490, 490), 0);
  EXPECT_EQ(getRed(maskImage, 509, 509), 0);
  EXPECT_EQ(fieldOverlapUm, 0);
  // A picture picked by "Import Image" takes the layout's place: the run writes the picture.
  recordedQueueFileChoice(maskPicturePath);
  dispatchCommand(IDM_IMPORT_IMAGE);
  EXPECT_EQ(heldLayout.widthCells, 0);
}

// Whatever is wrong with a file or the choice, the operator reads why, and the held
// layout, the mask picture and its path stay as they were.
TEST_F(LayoutImport, AFileItRefusesLeavesTheHeldPatternAsItWas) {
  importFile("good.gds", kTwoTops);
  const LayoutRaster before = heldLayout;
  const std::wstring path = maskPicturePath;
  std::string loop = library(cell("TOP", reference("A")) + cell("A", reference("B")) +
                             cell("B", reference("A") + square(0, 0, 5)));
  std::string deep = cell("C0", square(0, 0, 5));
  for (int i = 1; i <= 40; ++i)
    deep += cell("C" + std::to_string(i), reference("C" + std::to_string(i - 1)));
  const std::string dxfHead =
      "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n0\nLAYER\n2\nEMPTY\n0\nENDTAB\n0\nENDSEC\n0\nSECT"
      "ION\n2\nENTITIES\n";
  const struct {
    const char* name;
    std::string bytes;
    const char* message;
    std::string overlap = "0";
  } cases[] = {
      {"cut.gds", kTwoTops.substr(0, 150), "The file ends inside a record at byte 114."},
      {"ended.gds", kTwoTops.substr(0, kTwoTops.size() - 4),
       "The file ends before its ENDLIB record"},
      {"unknown.gds", library(record(0x70, 0)), "Unknown record type 0x70 at byte 62."},
      {"loop.gds", loop, "The cell A refers to itself through its references."},
      {"deep.gds", library(deep), "References nest deeper than 32 levels."},
      {"circle.dxf", dxfHead + "0\nCIRCLE\n8\nM\n10\n0\n20\n0\n40\n-1\n0\nENDSEC\n0\nEOF\n",
       "A CIRCLE has a negative radius on line 21."},
      {"empty.dxf", dxfHead + "0\nCIRCLE\n8\nM\n10\n0\n20\n0\n40\n1\n0\nENDSEC\n0\nEOF\n",
       "The layer EMPTY holds no shapes."},
      {"nothing.dxf", "0\nEOF\n", "The file holds no shapes."},
      {"overlap.gds", kTwoTops, "Field overlap (um) must be a number from 0 to 500.", "-3"},
  };
  for (const auto& c : cases) {
    recordedFeedbackReset();
    importFile(c.name, c.bytes, 0, 0, false, c.overlap);
    EXPECT_TRUE(hasLine(std::string("message Import Layout: ") +
                        (c.overlap == "0" ? std::string(c.name) + ": " : "") + c.message))
        << c.name << "\n"
        << ::testing::PrintToString(recordedCalls());
    EXPECT_EQ(heldLayout.dark, before.dark) << c.name;
    EXPECT_EQ(maskPicturePath, path) << c.name;
    EXPECT_EQ(darkPixels(), 50 * 50 + 6 * 6) << c.name;
  }
}

}  // namespace
