#include "jobs/writing_condition.h"
#include "station_fixture.h"

namespace {

using RunFolder = StationTest;

// The run folder is named by the minute of the first save and kept for the run, unless a
// new one is asked for; the writing-condition records in it are numbered from zero.
TEST_F(RunFolder, RecordsGoIntoTheFolderNamedAtTheFirstSave) {
  writeWritingCondition();
  virtualClockSetLocalTime({2024, 3, 17, 15, 9, 30});
  station.writingSpeed = 250;
  writeWritingCondition();
  const auto folder = dataPaths.dataFolder / "240317_14-05";
  EXPECT_EQ(dataPaths.runFolder, folder);
  EXPECT_EQ(writingConditionCounter, 2);
  EXPECT_EQ(readFile(folder / "writing_condition(0).txt"),
            "Mag:1X, laser shift:(0,0,0), Arduino:3, Standa:1,2,3\n"
            "Laser voltage: 2.30 V(inside), 2.60 V(outside), 1.30 V(line)\n"
            "Filling speed (in, out, skip): 700, 700, 600 (um/s)\n"
            "Vector writing speed (1um, 3um, 6um, 10um): 120, 100, 60, 40 (um/s)\n"
            "defocus (Dz): 0.0 um\n");
  EXPECT_NE(readFile(folder / "writing_condition(1).txt").find("700, 700, 250"), std::string::npos);
  ensureRunFolder(dataPaths, 1);
  EXPECT_EQ(dataPaths.runFolder, dataPaths.dataFolder / "240317_15-09");
}

}  // namespace
