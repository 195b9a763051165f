// A layout larger than one writing area, written field by field by one "Start Writing" on
// the virtual board: what the laser exposed is read back into layout cells, field by field.
#include <cmath>

#include "app/command_dispatch.h"
#include "link_fixture.h"
#include "pattern/layout_raster.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

namespace {

class FieldWriting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    openWithSpeeds(1000, 1000, 1000);
    linesEnabled = 0;
    fieldStarts_.clear();
    onField_ = nullptr;
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

  // A held layout of 1 um cells centred on the reference, dark rectangles (l, t, r, b).
  static void holdLayout(int width, int height, const std::vector<std::array<int, 4>>& dark) {
    heldLayout = LayoutRaster{width, height, 1.0, 0, 0, {}};
    heldLayout.dark.assign(static_cast<size_t>(width) * height, 0);
    for (const auto& [left, top, right, bottom] : dark)
      for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x) heldLayout.dark[static_cast<size_t>(y) * width + x] = 1;
  }

  // Every point field f (writing order, top-left cell given) exposed lies on a dark cell of
  // its own field, at (column - width / 2, height / 2 - 1 - row) um from the reference
  // whatever the field. Returns per cell the fields whose exposure passed over it.
  std::vector<uint16_t> exposedCells(const std::vector<std::pair<int, int>>& fieldTopLeft) {
    const int w = heldLayout.widthCells, h = heldLayout.heightCells;
    std::vector<uint16_t> fields(heldLayout.dark.size(), 0);
    const std::vector<BoardExposure>& log = virtualSerialBoard().exposure;
    EXPECT_EQ(fieldStarts_.size(), fieldTopLeft.size());
    for (size_t f = 0; f < fieldStarts_.size() && f < fieldTopLeft.size(); ++f) {
      const auto [left, top] = fieldTopLeft[f];
      const size_t end = f + 1 < fieldStarts_.size() ? fieldStarts_[f + 1] : log.size();
      EXPECT_LT(fieldStarts_[f], end) << "field " << f + 1 << " wrote nothing";
      for (size_t i = fieldStarts_[f]; i < end; ++i) {
        const BoardExposure& e = log[i];
        // The board logs the first stretch after the laser came on from where it last looked
        // at the stage, which was still on its way: only that stretch's end counts.
        const bool fresh = i == 0 || log[i - 1].x1Um != e.x0Um || log[i - 1].y1Um != e.y0Um;
        const int steps = static_cast<int>(std::hypot(e.x1Um - e.x0Um, e.y1Um - e.y0Um) * 8) + 1;
        for (int k = fresh ? steps : 0; k <= steps; ++k) {
          const double t = static_cast<double>(k) / steps;
          const int x = static_cast<int>(std::lround(e.x0Um + t * (e.x1Um - e.x0Um))) + w / 2;
          const int y = h / 2 - 1 - static_cast<int>(std::lround(e.y0Um + t * (e.y1Um - e.y0Um)));
          const bool own = x >= left && x < left + 1000 && y >= top && y < top + 1000;
          if (!own || x >= w || y >= h || heldLayout.dark[static_cast<size_t>(y) * w + x] == 0) {
            ADD_FAILURE() << "field " << f + 1 << " exposed " << x << "," << y;
            return fields;
          }
          fields[static_cast<size_t>(y) * w + x] |= static_cast<uint16_t>(1u << f);
        }
      }
    }
    return fields;
  }

  // True when field f's exposure passed within reach of cell (x, y): a cell or two in a
  // field's fine centre, a coarse block's diagonal and a little outside it.
  static bool reached(const std::vector<uint16_t>& exposed, int x, int y, int f, int fieldLeft,
                      int fieldTop) {
    const bool centre =
        x - fieldLeft >= 390 && x - fieldLeft < 610 && y - fieldTop >= 390 && y - fieldTop < 610;
    const int reach = centre ? 1 : 7;
    for (int b = std::max(0, y - reach); b <= std::min(heldLayout.heightCells - 1, y + reach); ++b)
      for (int a = std::max(0, x - reach); a <= std::min(heldLayout.widthCells - 1, x + reach); ++a)
        if (exposed[static_cast<size_t>(b) * heldLayout.widthCells + a] & (1u << f)) return true;
    return false;
  }

  std::vector<size_t> fieldStarts_;  // the exposure log's length as each field began
  std::function<void(int)> onField_;
};

// A 3 mm square layout at magnification 1 is nine fields in serpentine order, each written
// at its own place, without a cell of another field: a bar and a square carried across the
// seams come out whole. One record, the progress over all fields, the field being written
// outlined on the display, the stage back at the end. "Yes" in the second field ends the
// run after its stroke: no third field, and the stage goes back all the same. With an
// overlap, neighbouring fields both write the strip they share.
TEST_F(FieldWriting, ALayoutOfNineFieldsIsWrittenFieldByFieldAsOneRun) {
  holdLayout(3000, 3000,
             {{200, 100, 2800, 120},      // a bar across the top row of fields
              {2300, 200, 2320, 2800},    // a bar down the right column
              {600, 1700, 700, 1800},     // squares: in a field's coarse area,
              {1450, 1450, 1550, 1550},   // in the middle field's fine centre,
              {950, 1950, 1050, 2050}});  // over the corner of four fields
  const int gridColumn[] = {0, 1, 2, 2, 1, 0, 0, 1, 2};
  onField_ = [&](int field) {
    const int column = gridColumn[field - 1], row = (field - 1) / 3;
    // The display shows the whole layout at a third: the field's top edge is red.
    const Rgb top = recordedScreenPixel(116 + column * 333 + 166, 14 + row * 333 + 1);
    EXPECT_EQ(std::tuple(top.red, top.green, top.blue), std::tuple(255, 0, 0)) << field;
  };
  dispatchCommand(IDC_START_WRITING);

  std::vector<std::pair<int, int>> topLeft;
  for (int f = 0; f < 9; ++f) topLeft.emplace_back(gridColumn[f] * 1000, f / 3 * 1000);
  const std::vector<uint16_t> exposed = exposedCells(topLeft);
  for (int y = 0; y < 3000; ++y) {
    for (int x = 0; x < 3000; ++x) {
      if (heldLayout.dark[static_cast<size_t>(y) * 3000 + x] == 0) continue;
      const int f = static_cast<int>(
          std::find(topLeft.begin(), topLeft.end(), std::pair(x / 1000 * 1000, y / 1000 * 1000)) -
          topLeft.begin());
      ASSERT_TRUE(reached(exposed, x, y, f, topLeft[f].first, topLeft[f].second)) << x << "," << y;
    }
  }
  EXPECT_TRUE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(0).txt"));
  EXPECT_FALSE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(1).txt"));
  std::vector<int> percents;  // the progress counts every field's cells: 100 % once, at the end
  for (const std::string& text : linesAfter("box Progress: Writing: ", recordedCalls()))
    percents.push_back(std::stoi(text));
  EXPECT_TRUE(std::ranges::is_sorted(percents));
  EXPECT_EQ(std::ranges::count(percents, 100), 1);
  EXPECT_EQ(percents.back(), 100);
  EXPECT_EQ(recordedBoxText(Box::Progress), "All Writings finished");
  EXPECT_EQ(joined(sentCommands("mM"), sentCommands("mM").size() - 2), "m0,M0");
  TearDown();
  SetUp();
  holdLayout(3000, 3000, {{200, 100, 2800, 120}});  // 16000 cells in field 1, 20000 in 2
  onField_ = [](int field) {
    if (field != 2) return;
    recordedScriptClick(virtualClockNow() + 4000, QueuedTarget::MainWindow);
    recordedQueueAnswer(Answer::Yes);
  };
  dispatchCommand(IDC_START_WRITING);
  EXPECT_EQ(fieldStarts_.size(), 2u);
  EXPECT_GT(station.doneCells, 16000);
  EXPECT_LT(station.doneCells, 36000);
  EXPECT_EQ(boardPwm(virtualSerialBoard(), kBoardLaserChannel), 0);
  EXPECT_EQ(recordedBoxText(Box::Progress), "All Writings finished");
  EXPECT_EQ(joined(sentCommands("mM"), sentCommands("mM").size() - 2), "m0,M0");

  // With an overlap of 12 um two fields share a strip of 12 cells: both write the bar there.
  TearDown();
  SetUp();
  holdLayout(1988, 1000, {{100, 100, 1900, 120}});
  fieldOverlapUm = 12;
  dispatchCommand(IDC_START_WRITING);
  const std::vector<uint16_t> shared = exposedCells({{0, 0}, {988, 0}});
  for (int x = 100; x < 1900; ++x) {
    for (int y = 100; y < 120; ++y) {
      EXPECT_TRUE(x >= 1000 || reached(shared, x, y, 0, 0, 0)) << x << "," << y;
      EXPECT_TRUE(x < 988 || reached(shared, x, y, 1, 988, 0)) << x << "," << y;
    }
  }
}

}  // namespace
