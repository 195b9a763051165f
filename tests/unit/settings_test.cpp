#include "station/settings.h"

#include "app/startup.h"
#include "pattern/cluster_table.h"
#include "sim/virtual_camera.h"
#include "station_fixture.h"

namespace {

constexpr const char* kDefaultLine =
    "Mag:1X, laser shift:(0,0,0), Arduino:3, Standa:1,2,3, Vin:2.30, Vout:2.60, Vv:1.30\n";

using SettingsLine = StationTest;

TEST_F(SettingsLine, WithoutAFileTheDefaultsStandAndAreWrittenAtExit) {
  EXPECT_FALSE(readSettingsFile(dataPaths.configPath, serialLink.comPort));
  ASSERT_TRUE(writeSettingsFile(dataPaths.configPath, serialLink.comPort));
  EXPECT_EQ(readFile(dataPaths.configPath), kDefaultLine);
}

TEST_F(SettingsLine, AFullLineIsTakenWholeAndVoltagesWrittenWithTwoDecimals) {
  writeFile(dataPaths.configPath,
            "Mag:10X, laser shift:(600,500,12), Arduino:5, Standa:2,1,0, Vin:2.345, Vout:2.6, "
            "Vv:1.3\n");
  ASSERT_TRUE(readSettingsFile(dataPaths.configPath, serialLink.comPort));
  EXPECT_EQ(station.insideVoltage, 2.345);
  writeSettingsFile(dataPaths.configPath, serialLink.comPort);
  // The double nearest 2.345 lies just above it, so two decimals round it up.
  EXPECT_EQ(readFile(dataPaths.configPath),
            "Mag:10X, laser shift:(600,500,12), Arduino:5, Standa:2,1,0, Vin:2.35, Vout:2.60, "
            "Vv:1.30\n");
}

TEST_F(SettingsLine, OnlyTheFirst99CharactersAreParsed) {
  // Character 99 falls inside the Vout value: "Vout:2.6" is cut to "Vout:2." and Vv is lost.
  std::string line =
      "Mag:2X, laser shift:(100000,200000,300000), Arduino:12, Standa:3,3,3, Vin:1.25000000000000, "
      "Vout:2.6, Vv:4.4\n";
  ASSERT_EQ(line.substr(92, 7), "Vout:2.");
  writeFile(dataPaths.configPath, line);
  readSettingsFile(dataPaths.configPath, serialLink.comPort);
  EXPECT_EQ(station.insideVoltage, 1.25);
  EXPECT_EQ(station.outsideVoltage, 2.0);
  EXPECT_EQ(station.lineVoltage, 1.3);
}

TEST_F(SettingsLine, AMismatchKeepsTheRestAtDefaults) {
  writeFile(dataPaths.configPath, "Zoom:4X, laser shift:(1,2,3), Arduino:7\n");
  readSettingsFile(dataPaths.configPath, serialLink.comPort);
  writeSettingsFile(dataPaths.configPath, serialLink.comPort);
  EXPECT_EQ(readFile(dataPaths.configPath), kDefaultLine);

  writeFile(dataPaths.configPath, "Mag:3X, laser shift:(1,2,x), Arduino:7\n");
  readSettingsFile(dataPaths.configPath, serialLink.comPort);
  EXPECT_EQ(station.magnification, 3);
  EXPECT_EQ(laser.laserShiftY, 2);
  EXPECT_EQ(laser.laserShiftZ, 0);
  EXPECT_EQ(serialLink.comPort, 3);
}

using StartUp = StationTest;

TEST_F(StartUp, WithNoDevicesEachIsReportedInOrderWithoutOwner) {
  virtualSerialSetPresent(false);
  virtualCameraReset();
  virtualCameraSetPresent(false);
  startUpDevices();
  const std::vector<std::string> expected = {
      "message Warning: Error in  opening serial port (no owner)",
      "message Scanner Error: No standa devices found (no owner)",
      "message Warning: Error in  opening serial port (no owner)",
      "message Communication Error: No arduino devices found (no owner)",
      "message Camera Error: No Barsler camera found (no owner)"};
  std::vector<std::string> messages;
  for (const std::string& call : recordedCalls())
    if (call.rfind("message ", 0) == 0) messages.push_back(call);
  EXPECT_EQ(messages, expected);
  EXPECT_EQ(cameraImageSize.width, 1232);
  EXPECT_EQ(pictureImageSize.height, 1028);
  shutDownDevices();
}

TEST_F(StartUp, SettingsRecomputeTheGeometryAndShutdownWritesThemBack) {
  writeFile(dataPaths.configPath, "Mag:2X, laser shift:(0,0,0)\n");
  startUpDevices();
  EXPECT_EQ(station.magnification, 2);
  EXPECT_EQ(station.cameraRect.left, 247);  // recomputed, no longer the whole display
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
