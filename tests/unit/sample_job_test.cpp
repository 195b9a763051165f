#include "app/sample_job.h"

#include "pattern/line_file.h"
#include "station_fixture.h"

namespace {

using SampleJob = StationTest;

// The mask's pixel rows (filter byte, then 1 bit a pixel, set bright) from its stored
// deflate blocks.
std::string maskRows(const std::string& png) {
  std::string rows;
  size_t at = png.find("IDAT") + 4 + 2;  // past the zlib header
  for (bool last = false; !last;) {
    last = (png[at] & 1) != 0;
    const size_t size = uint8_t(png[at + 1]) | size_t(uint8_t(png[at + 2])) << 8;
    rows += png.substr(at + 5, size);
    at += 5 + size;
  }
  return rows;
}

// The sample job lands in the data folder once: the mask has its shapes in the finely
// written centre and the coarse outside, and none under the line triangle; the line file
// imports as one closed triangle of "1" lines; an operator's own copy is left alone.
TEST_F(SampleJob, LandsInTheDataFolderAndKeepsTheOperatorsCopy) {
  const auto folder = dataPaths.dataFolder;
  writeFile(folder / kSampleLinesName, "0,0,10,0,3\n");
  placeSampleJob(folder);
  EXPECT_EQ(readFile(folder / kSampleLinesName), "0,0,10,0,3\n");

  const std::string rows = maskRows(readFile(folder / kSampleMaskName));
  ASSERT_EQ(rows.size(), 1000u * 126u);
  auto dark = [&](int x, int y) {
    return (rows[size_t(y) * 126 + 1 + size_t(x) / 8] & (0x80 >> (x % 8))) == 0;
  };
  EXPECT_TRUE(dark(500, 500) && dark(250, 250) && dark(750, 800));  // centre, disc, triangle
  EXPECT_FALSE(dark(5, 5) || dark(995, 995) || dark(500, 300) || dark(500 - 225, 500 + 200));
  EXPECT_FALSE(dark(570, 500) || dark(500, 464) || dark(690, 730));  // the rectangle's edges

  std::filesystem::remove(folder / kSampleLinesName);
  placeSampleJob(folder);
  importLines(folder / kSampleLinesName);
  const auto& s = linePattern.segments;
  ASSERT_EQ(s.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    const LineSegment& next = s[(i + 1) % 3];
    EXPECT_EQ(std::make_tuple(s[i].x2, s[i].y2, s[i].width), std::make_tuple(next.x1, next.y1, 1));
  }
}

}  // namespace
