// The line file: saving the list after a run, importing it again, and what an import
// makes of lines that do not parse and of files that cannot be opened.
#include "pattern/line_file.h"

#include <tuple>

#include "app/command_dispatch.h"
#include "resources/resource.h"
#include "sim/recorded_display.h"
#include "station_fixture.h"

namespace {

using LineFile = StationTest;
using Fields = std::vector<std::tuple<float, float, float, float, int>>;

Fields fieldsOf(const std::vector<LineSegment>& lines) {
  Fields fields;
  for (const LineSegment& l : lines) fields.emplace_back(l.x1, l.y1, l.x2, l.y2, l.width);
  return fields;
}

TEST_F(LineFile, SavedFilesNeverOverwriteAndImportGivesTheListBack) {
  station.zoom = 1.0;
  recordedDisplayReset();
  const std::vector<LineSegment> drawn = {{12.0f, -40.5f, 112.0f, -40.5f, 3},
                                          {112.0f, -40.5f, 0.25f, 7.125f, 10}};
  linePattern.segments = drawn;
  const std::string text = buildLineText();
  EXPECT_EQ(text,
            "12.000000,-40.500000,112.000000,-40.500000,3\n"
            "112.000000,-40.500000,0.250000,7.125000,10\n");
  saveLines(dataPaths, text);
  saveLines(dataPaths, text);
  const std::filesystem::path second = dataPaths.runFolder / "LinePattern_0.txt";
  EXPECT_EQ(std::filesystem::path(dataPaths.lineFileName), second);
  EXPECT_EQ(readFile(dataPaths.runFolder / "LinePattern.txt"), readFile(second));

  linePattern = LinePattern();
  recordedQueueFileChoice(second.wstring());
  dispatchCommand(IDM_IMPORT_LINE_PATTERNS);
  EXPECT_EQ(fieldsOf(linePattern.segments), fieldsOf(drawn));
  EXPECT_TRUE(hasLine("line display 628,474-728,474 width 3 pen 0000ff", recordedDisplayCalls()));
}

// Values are not reset between lines: a line that does not parse repeats the one before it
// once, and a first line that does not parse gives a zero segment. An empty or missing file
// leaves the list empty; only the missing one is reported.
TEST_F(LineFile, EachLineIsTakenAsFarAsItParses) {
  writeFile(desktop_ / "lines.txt", "nothing here\n1,2,3,4,6\n# a comment\n5,6\n");
  importLines(desktop_ / "lines.txt");
  EXPECT_EQ(fieldsOf(linePattern.segments),
            fieldsOf({{0, 0, 0, 0, 0}, {1, 2, 3, 4, 6}, {1, 2, 3, 4, 6}, {5, 6, 3, 4, 6}}));
  writeFile(desktop_ / "empty.txt", "");
  for (const char* name : {"empty.txt", "missing.txt"}) {
    linePattern.segments = {{0, 0, 10, 0, 3}};
    importLines(desktop_ / name);
    EXPECT_TRUE(linePattern.segments.empty()) << name;
  }
  EXPECT_EQ(linesAfter("message ", recordedCalls()),
            std::vector<std::string>{"File open error: Unable to open file"});
}

}  // namespace
