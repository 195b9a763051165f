// A GDSII layout larger than one writing area, imported and written field by field by one
// "Start Writing" on the virtual board: the display, the record, the progress, the stop and
// the exposure picture over all fields.
#include "layout_file_fixture.h"
#include "link_fixture.h"
#include "pattern/field_plan.h"
#include "pattern/layout_raster.h"
#include "pattern_fixture.h"
#include "sim/exposure_picture.h"

namespace {

using namespace gdsii;

class FieldWriting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    openWithSpeeds(1000, 1000, 1000);
    linesEnabled = 0;
    recordedWatchStatus([this](const std::string& text) {
      if (text.rfind("Writing field ", 0) != 0) return;
      fieldStarts_.push_back(virtualSerialBoard().exposure.size());
      if (onField_) onField_(static_cast<int>(fieldStarts_.size()));
    });
  }
  void TearDown() override {
    heldLayout = LayoutRaster();
    fieldOverlapUm = 0;
    LinkTest::TearDown();
  }
  // The dark cells of the picture's cells [left, right) x [low, high), rows up.
  static int darkIn(const DevelopedArea& picture, int left, int right, int low, int high) {
    int dark = 0;
    for (int y = low; y < high; ++y)
      for (int x = left; x < right; ++x) dark += picture.cellDark(x, y) ? 1 : 0;
    return dark;
  }
  std::vector<size_t> fieldStarts_;  // the exposure log's length as each field began
  std::function<void(int)> onField_;
};

// A 3 mm square layout imported at magnification 1 is shown whole with its field grid and
// written as nine fields in serpentine order, the field being written outlined in red. The
// exposure picture covers all fields: a bar across the top row's seams, a bar down the right
// column's and a square over the corner of four fields come out whole and at their widths.
// One record, the progress over all fields to 100 % once, the stage back at the end. "Yes"
// in the second field ends the run after its stroke; at another magnification the run
// refuses. With an overlap both neighbours write the strip they share.
TEST_F(FieldWriting, AnImportedLayoutOfNineFieldsIsWrittenFieldByFieldAsOneRun) {
  const std::string nine =
      library(cell("TOP", square(-1500, -1500, 10) + square(1490, 1490, 10) +
                              rectangle(-1300, 1300, 1300, 1320) +
                              rectangle(1200, -1300, 1220, 1280) + square(-550, 450, 100)));
  importLayoutFile(desktop_ / "nine.gds", nine);
  ASSERT_EQ(std::tuple(heldLayout.widthCells, heldLayout.heightCells), std::tuple(3000, 3000));
  // The display shows the whole layout at a third: grey seams, the blue bar.
  EXPECT_EQ(recordedScreenPixel(116 + 333, 14 + 500).green, 128);
  EXPECT_EQ(recordedScreenPixel(116 + 500, 14 + 62).blue, 255);
  const int gridColumn[] = {0, 1, 2, 2, 1, 0, 0, 1, 2};
  onField_ = [&](int field) {
    const int column = gridColumn[field - 1], row = (field - 1) / 3;
    const Rgb top = recordedScreenPixel(116 + column * 333 + 166, 14 + row * 333 + 1);
    EXPECT_EQ(std::tuple(top.red, top.green, top.blue), std::tuple(255, 0, 0)) << field;
  };
  const uint64_t startedMs = virtualClockNow();
  dispatchCommand(IDC_START_WRITING);
  std::fprintf(stderr, "9 fields: %.1f s on the virtual clock\n",
               (virtualClockNow() - startedMs) / 1000.0);
  EXPECT_EQ(fieldStarts_.size(), 9u);
  EXPECT_EQ(recordedBoxText(Box::Progress), "All Writings finished");
  EXPECT_EQ(joined(sentCommands("mM"), sentCommands("mM").size() - 2), "m0,M0");
  EXPECT_FALSE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(1).txt"));
  std::vector<int> percents;
  for (const std::string& text : linesAfter("box Progress: Writing: ", recordedCalls()))
    percents.push_back(std::stoi(text));
  EXPECT_TRUE(std::ranges::is_sorted(percents));
  EXPECT_EQ(std::ranges::count(percents, 100), 1);
  DevelopedArea picture;
  ASSERT_TRUE(loadExposurePicture(dataPaths.runFolder / "exposure(0).png", picture));
  ASSERT_EQ(picture.side, 3000 * kExposurePixelsPerCell);
  // Cell (x + 1500, y + 1500) lies at (x, y) um; every column of a bar holds its 20 um but
  // the few beside a seam, where the fields' strokes turn and their ends' dots widen the bar
  // to 25 at the most.
  for (int along = 300; along < 2690; ++along) {
    const int slack = (along + 8) % 1000 < 16 ? 5 : 1;
    EXPECT_NEAR(darkIn(picture, along, along + 1, 2760, 2860), 20, slack) << "top bar " << along;
    EXPECT_NEAR(darkIn(picture, 2660, 2760, along, along + 1), 20, slack) << "right bar " << along;
  }
  EXPECT_NEAR(darkIn(picture, 900, 1100, 1900, 2100), 100 * 100, 400);
  // The bars, the squares and the dots the stage's turnarounds leave at 9600 baud.
  EXPECT_NEAR(darkIn(picture, 0, 3000, 0, 3000), 52000 + 51600 + 10000 + 200, 9000);

  onField_ = nullptr;
  station.magnification = 2;
  dispatchCommand(IDC_START_WRITING);
  EXPECT_TRUE(
      hasLine("message Start Writing: The layout was imported at magnification 1 and "
              "the magnification is now 2."));
  EXPECT_FALSE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(1).txt"));

  station.magnification = 1;
  fieldStarts_.clear();
  const FieldPlan plan = planFields(heldLayout, 0);
  onField_ = [](int field) {
    if (field != 2) return;
    recordedScriptClick(virtualClockNow() + 4000, QueuedTarget::MainWindow);
    recordedQueueAnswer(Answer::Yes);
  };
  virtualSerialClearWritten();
  dispatchCommand(IDC_START_WRITING);
  EXPECT_EQ(fieldStarts_.size(), 2u);
  EXPECT_GT(station.doneCells, plan.fields[0].darkCells);
  EXPECT_LT(station.doneCells, plan.fields[0].darkCells + plan.fields[1].darkCells);
  EXPECT_EQ(boardPwm(virtualSerialBoard(), kBoardLaserChannel), 0);
  // The stage goes back to where this run found it.
  EXPECT_EQ(joined(sentCommands("mM"), sentCommands("mM").size() - 2),
            joined(sentCommands("mM"), 0, 2));

  // 12 um of overlap: a bar 1988 um long is two fields sharing 12 cells; both expose it.
  fieldStarts_.clear();
  onField_ = nullptr;
  importLayoutFile(desktop_ / "two.gds", library(cell("TOP", rectangle(-994, -10, 994, 10))), 0, 0,
                   false, "12");
  dispatchCommand(IDC_START_WRITING);
  ASSERT_EQ(fieldStarts_.size(), 2u);
  const std::vector<BoardExposure>& log = virtualSerialBoard().exposure;
  // How far past the writing reference toward the other field a field's exposure reaches.
  // The board logs a stretch's start from where it last looked at the stage: only an
  // unbroken stretch's start counts.
  auto reach = [&](size_t first, size_t end, double toward) {
    const double reference = StageXForColumn(kPatternSide / 2, 1);
    double most = -1e9;
    for (size_t i = first; i < end; ++i) {
      most = std::max(most, toward * (log[i].x1Um - reference));
      if (i > first && log[i - 1].x1Um == log[i].x0Um && log[i - 1].y1Um == log[i].y0Um)
        most = std::max(most, toward * (log[i].x0Um - reference));
    }
    return most;
  };
  EXPECT_GT(reach(fieldStarts_[0], fieldStarts_[1], 1), 0.5);
  EXPECT_GT(reach(fieldStarts_[1], log.size(), -1), 0.5);
}

}  // namespace
