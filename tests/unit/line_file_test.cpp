// The line file: saving the list after a run, importing it again, and what an import
// makes of lines that do not parse and of files that cannot be opened.
#include "pattern/line_file.h"

#include <tuple>

#include "app/command_dispatch.h"
#include "resources/resource.h"
#include "sim/recorded_display.h"
#include "station_fixture.h"

namespace {

class LineFile : public StationTest {
 protected:
  void SetUp() override {
    StationTest::SetUp();
    station.zoom = 1.0;
    recordedDisplayReset();
  }
};

TEST_F(LineFile, SavedFilesNeverOverwriteAndImportGivesTheListBack) {
  const std::vector<LineSegment> drawn = {{12.0f, -40.5f, 112.0f, -40.5f, 3},
                                          {112.0f, -40.5f, 0.25f, 7.125f, 10}};
  linePattern.segments = drawn;
  const std::string text = buildLineText();
  EXPECT_EQ(text,
            "12.000000,-40.500000,112.000000,-40.500000,3\n"
            "112.000000,-40.500000,0.250000,7.125000,10\n");
  saveLines(dataPaths, text);
  saveLines(dataPaths, text);
  const std::filesystem::path first = dataPaths.runFolder / "LinePattern.txt";
  const std::filesystem::path second = dataPaths.runFolder / "LinePattern_0.txt";
  EXPECT_EQ(std::filesystem::path(dataPaths.lineFileName), second);
  EXPECT_EQ(readFile(first), readFile(second));

  linePattern = LinePattern();
  recordedQueueFileChoice(second.wstring());
  dispatchCommand(IDM_IMPORT_LINE_PATTERNS);
  ASSERT_EQ(linePattern.segments.size(), 2u);
  for (size_t i = 0; i < drawn.size(); ++i) {
    EXPECT_EQ(linePattern.segments[i].x1, drawn[i].x1);
    EXPECT_EQ(linePattern.segments[i].y2, drawn[i].y2);
    EXPECT_EQ(linePattern.segments[i].width, drawn[i].width);
  }
  EXPECT_TRUE(hasLine("line display 628,474-728,474 width 3 pen 0000ff", recordedDisplayCalls()));
}

// Values are not reset between lines: a line that does not parse repeats the one before it
// once, and a first line that does not parse gives a zero segment.
TEST_F(LineFile, ALineThatDoesNotParseRepeatsThePreviousValues) {
  const std::filesystem::path file = desktop_ / "lines.txt";
  writeFile(file, "nothing here\n1,2,3,4,6\n# a comment\n5,6\n");
  importLines(file);
  ASSERT_EQ(linePattern.segments.size(), 4u);
  auto fields = [](const LineSegment& l) { return std::tuple{l.x1, l.y1, l.x2, l.y2, l.width}; };
  EXPECT_EQ(fields(linePattern.segments[0]), std::tuple(0.0f, 0.0f, 0.0f, 0.0f, 0));
  EXPECT_EQ(fields(linePattern.segments[2]), std::tuple(1.0f, 2.0f, 3.0f, 4.0f, 6));
  EXPECT_EQ(fields(linePattern.segments[3]), std::tuple(5.0f, 6.0f, 3.0f, 4.0f, 6));
}

TEST_F(LineFile, AnEmptyOrMissingFileLeavesTheListEmpty) {
  linePattern.segments = {{0, 0, 10, 0, 3}};
  const std::filesystem::path empty = desktop_ / "empty.txt";
  writeFile(empty, "");
  importLines(empty);
  EXPECT_TRUE(linePattern.segments.empty());
  EXPECT_FALSE(hasLine("message"));

  linePattern.segments = {{0, 0, 10, 0, 3}};
  importLines(desktop_ / "missing.txt");
  EXPECT_TRUE(linePattern.segments.empty());
  EXPECT_TRUE(hasLine("message File open error: Unable to open file"));
}

}  // namespace
