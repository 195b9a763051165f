#include "app/sample_job.h"

#include "pattern/line_file.h"
#include "sim/picture_file.h"
#include "station_fixture.h"

namespace {

using SampleJob = StationTest;

// The sample job lands in the data folder once: the mask has its shapes in the finely
// written centre and the coarse outside, and none under the line triangle; the line file
// imports as one closed triangle of "1" lines; an operator's own copy is left alone.
TEST_F(SampleJob, LandsInTheDataFolderAndKeepsTheOperatorsCopy) {
  const auto folder = dataPaths.dataFolder;
  writeFile(folder / kSampleLinesName, "0,0,10,0,3\n");
  placeSampleJob(folder);
  EXPECT_EQ(readFile(folder / kSampleLinesName), "0,0,10,0,3\n");

  RecordedPicture mask;  // rows bottom-up, four bytes a pixel
  ASSERT_TRUE(readPictureFile(folder / kSampleMaskName, mask));
  ASSERT_EQ(mask.width * mask.height, 1000 * 1000);
  auto dark = [&](int x, int y) {
    return mask.pixels[(size_t(999 - y) * 1000 + size_t(x)) * 4] < 128;
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
