// "Import Layout" from the menu: the file, the dialog's choices, the held layout and the
// mask picture that "Mask Pattern" then works on; and the files it refuses. The
// rasterization itself is compared with other programs' geometry in
// tests/native/test_layout_import.py.
#include <cmath>

#include "app/command_dispatch.h"
#include "pattern/layout_raster.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

namespace {

// GDSII records: 2-byte length, record type, data type, big-endian values.
std::string be(uint64_t value, int bytes) {
  std::string out;
  for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
  return out;
}
std::string record(int type, int dataType, std::string body = "") {
  if (body.size() % 2 != 0) body += '\0';  // names are padded to an even length
  return be(body.size() + 4, 2) + static_cast<char>(type) + static_cast<char>(dataType) + body;
}
std::string real8(double value) {  // positive values: exponent of 16 biased by 64
  int exponent = 64;
  while (value >= 1) value /= 16, ++exponent;
  while (value < 1.0 / 16) value *= 16, --exponent;
  return be((static_cast<uint64_t>(exponent) << 56) | static_cast<uint64_t>(std::ldexp(value, 56)),
            8);
}
std::string cell(const std::string& name, const std::string& elements) {
  return record(0x05, 2, std::string(24, '\0')) + record(0x06, 6, name) + elements +
         record(0x07, 0);
}
// A square of side um with its lower-left corner at (x, y) um on layer 1/0 (1 nm units).
std::string square(int x, int y, int side) {
  std::string xy;
  const int corners[5][2] = {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}};
  for (const auto& c : corners)
    xy += be(static_cast<uint32_t>(c[0] * 1000), 4) + be(static_cast<uint32_t>(c[1] * 1000), 4);
  return record(0x08, 0) + record(0x0D, 2, be(1, 2)) + record(0x0E, 2, be(0, 2)) +
         record(0x10, 3, xy) + record(0x11, 0);
}
std::string reference(const std::string& name) {
  return record(0x0A, 0) + record(0x12, 6, name) + record(0x10, 3, std::string(8, '\0')) +
         record(0x11, 0);
}
std::string library(const std::string& cells) {
  return record(0x00, 2, be(600, 2)) + record(0x01, 2, std::string(24, '\0')) +
         record(0x02, 6, "LIB") + record(0x03, 5, real8(0.001) + real8(1e-9)) + cells +
         record(0x04, 0);
}

class LayoutImport : public PatternTest {
 protected:
  void SetUp() override {
    PatternTest::SetUp();
    heldLayout = {};
    fieldOverlapUm = 0;
  }
  // The operator picks the file, then in the dialog: the layer and top-cell entries,
  // the centre box, the overlap, and OK.
  void importFile(const std::string& name, const std::string& bytes, int layer = 0, int top = 0,
                  bool centre = false, const std::string& overlap = "0") {
    const auto path = std::filesystem::temp_directory_path() / name;
    std::ofstream(path, std::ios::binary) << bytes;
    recordedQueueFileChoice(path.wstring());
    recordedDialogReset();  // a file refused before the dialog leaves its script unplayed
    recordedDialogChoose(IDC_LAYOUT_LAYER, layer);
    recordedDialogChoose(IDC_LAYOUT_TOP_CELL, top);
    if (centre) recordedDialogToggle(IDC_LAYOUT_CENTRE);
    recordedDialogType(IDC_LAYOUT_OVERLAP, overlap);
    recordedDialogPress(IDC_LAYOUT_OK);
    dispatchCommand(IDM_IMPORT_LAYOUT);
    std::filesystem::remove(path);
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
