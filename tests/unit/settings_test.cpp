#include "station/settings.h"

#include "app/startup.h"
#include "sim/virtual_camera.h"
#include "station_fixture.h"

namespace {

using SettingsLine = StationTest;

// Config.txt as read at start-up and written back at exit. A line that stops matching keeps
// what it read so far and the defaults after it; only its first 99 characters are parsed
// (here character 99 falls inside "Vout:2.6", which reads as 2.0, and Vv is lost).
TEST_F(SettingsLine, TheLineIsReadAsFarAsItMatchesAndWrittenBackWhole) {
  const std::string defaults =
      "Mag:1X, laser shift:(0,0,0), Arduino:3, Standa:1,2,3, Vin:2.30, Vout:2.60, Vv:1.30\n";
  const std::pair<const char*, std::string> cases[] = {
      {nullptr, defaults},
      {"Mag:3X, laser shift:(1,2,x), Arduino:7\n",
       "Mag:3X, laser shift:(1,2,0), Arduino:3, Standa:1,2,3, Vin:2.30, Vout:2.60, Vv:1.30\n"},
      // The double nearest 2.345 lies just above it, so two decimals round it up.
      {"Mag:10X, laser shift:(600,500,12), Arduino:5, Standa:2,1,0, Vin:2.345, Vout:2.6, Vv:1.3\n",
       "Mag:10X, laser shift:(600,500,12), Arduino:5, Standa:2,1,0, Vin:2.35, Vout:2.60, "
       "Vv:1.30\n"},
      {"Mag:2X, laser shift:(100000,200000,300000), Arduino:12, Standa:3,3,3, "
       "Vin:1.25000000000000, Vout:2.6, Vv:4.4\n",
       "Mag:2X, laser shift:(100000,200000,300000), Arduino:12, Standa:3,3,3, Vin:1.25, "
       "Vout:2.00, Vv:1.30\n"}};
  for (const auto& [line, written] : cases) {
    TearDown();
    SetUp();
    if (line != nullptr) writeFile(dataPaths.configPath, line);
    EXPECT_EQ(readSettingsFile(dataPaths.configPath, serialLink.comPort), line != nullptr);
    ASSERT_TRUE(writeSettingsFile(dataPaths.configPath, serialLink.comPort));
    EXPECT_EQ(readFile(dataPaths.configPath), written) << (line ? line : "no file");
  }
}

using StartUp = StationTest;

// Without devices each is reported in order; the settings read recompute the geometry, and
// shutdown frees the cluster table, switches the laser off and writes the settings back.
TEST_F(StartUp, WithNoDevicesEachIsReportedAndShutdownWritesTheSettingsBack) {
  writeFile(dataPaths.configPath, "Mag:2X, laser shift:(0,0,0)\n");
  virtualSerialSetPresent(false);
  virtualCameraReset();
  virtualCameraSetPresent(false);
  startUpDevices();
  const std::vector<std::string> expected = {
      "Warning: Error in  opening serial port (no owner)",
      "Scanner Error: No standa devices found (no owner)",
      "Warning: Error in  opening serial port (no owner)",
      "Communication Error: No arduino devices found (no owner)",
      "Camera Error: No Barsler camera found (no owner)"};
  EXPECT_EQ(linesAfter("message ", recordedCalls()), expected);
  EXPECT_EQ(station.cameraRect.left, 247);  // recomputed for Mag:2X
  ASSERT_NE(clusterTable, nullptr);
  EXPECT_EQ(clusterTable[kClusterCapacity - 1].count, 0);
  station.magnification = 6;
  laser.laserOn = 1;
  shutDownDevices();
  EXPECT_EQ(clusterTable, nullptr);
  EXPECT_EQ(laser.laserOn, 0);
  EXPECT_EQ(readFile(dataPaths.configPath).substr(0, 7), "Mag:6X,");
}

}  // namespace
