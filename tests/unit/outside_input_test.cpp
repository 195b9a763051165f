// Outside input at the ends of what it can hold: a settings line, the board's replies and
// a camera's frames that the fuzz targets (fuzz/) found the program falling over, and the
// numbers of its files. Under the sanitizers any overflow ends the test binary.
#include <climits>
#include <filesystem>

#include "camera/live_render.h"
#include "camera/picture_files.h"
#include "camera_test_support.h"
#include "jobs/raster_writing.h"
#include "link/jog_pad.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "station/settings.h"
#include "station/status_display.h"
#include "station/view_geometry.h"

namespace {

using OutsideSettings = CameraTest;

TEST_F(OutsideSettings, MagnificationAndLaserShiftAtTheIntEndsSaturateWhatTheyScale) {
  writeFile(dataPaths.configPath, "Mag:2147483647X, laser shift:(2147483647,-2147483648,0)\n");
  if (readSettingsFile(dataPaths.configPath, serialLink.comPort)) recomputeViewGeometry(station);
  EXPECT_EQ(station.scaledAreaRect.left, INT_MIN);
  EXPECT_EQ(station.scaledAreaRect.right, INT_MAX);
  laser.laserOn = 1;
  RenderLive(SurfaceWindow::Display, displayFrame);
  EXPECT_TRUE(
      hasLine("ellipse 2147483642,2147483647,2147483647,2147483647", recordedDisplayCalls()));
  showTimeEstimate(cellGrid.cellSize);
  EXPECT_EQ(recordedBoxText(Box::Time), "0 (2147483647) min.");
  EXPECT_EQ(StageXForColumn(999, 1), 499.0 * INT_MAX + INT_MAX);

  // The smallest magnification takes the zoom to infinity: the camera field and the scale
  // bar end up at the int range's ends and at 0.
  writeFile(dataPaths.configPath, "Mag:-2147483648X\n");
  if (readSettingsFile(dataPaths.configPath, serialLink.comPort)) recomputeViewGeometry(station);
  EXPECT_EQ(station.cameraRect.right, INT_MAX);
  RenderLive(SurfaceWindow::Display, displayFrame);
  EXPECT_TRUE(hasLine("rect 950,950,950,955", recordedDisplayCalls()));
}

using OutsideFrames = CameraTest;

TEST_F(OutsideFrames, AFrameSmallerThanTheSensorsFailsTheGrabAndIsNeverSummed) {
  ASSERT_EQ(CameraConnect(camera), 1);
  virtualCameraUseFrameBytes(std::vector<uint8_t>(2464 * 4, 9));  // four rows only
  CameraGrab(camera, 1);
  CameraGrab(camera, 2);
  EXPECT_EQ(grabFailureCount, 2);
  EXPECT_TRUE(hasLine("status: Fail in Grabbing"));
  camera.sumFrame[0] = 5;
  CameraSetup(camera, 3);
  EXPECT_EQ(camera.sumFrame[0], 5);
}

using OutsideReplies = LinkTest;

TEST_F(OutsideReplies, AJogFromAPositionAtTheEndOfTheStepRangeSendsTheEndOfTheRange) {
  openWithSpeeds(1000, 1000, 1000);
  VirtualBoard& board = virtualSerialBoard();
  const std::string reply = "P2147483647\r\n";
  board.output.insert(board.output.end(), reply.begin(), reply.end());
  board.faults.silent = true;
  JogByKey(0x28);  // Down: the wait reads the reply and times out
  EXPECT_EQ(serialLink.positionUm[1], 2147483647.0 * 5 / 8);
  JogByKey(0x26);  // Up, beyond the range
  EXPECT_THAT(sentCommands(), testing::Contains("M2147483647"));
}

TEST_F(OutsideReplies, AWaitWithTheLongestTimeOutEndsWhenItRunsOut) {
  openWithSpeeds(1000, 1000, 1000);
  virtualSerialBoard().faults.silent = true;
  const uint64_t start = virtualClockNow();
  recordedScriptAction(start + 1000, [] { virtualClockAdvance(INT_MAX - 2000LL); });
  const uint64_t stopAt = start + INT_MAX + 60'000LL;  // ends the wait if the time-out does not
  recordedScriptQuit(stopAt);
  EXPECT_EQ(WaitForAxis(serialLink, 2, 100.0, INT_MAX), kWaitTimedOut);
  EXPECT_LT(virtualClockNow(), stopAt);
}

using OutsideNumbers = CameraTest;

TEST_F(OutsideNumbers, RecordAndPictureNumbersWrapAtTheEndOfTheIntRange) {
  writingConditionCounter = INT_MAX;
  opticNumber = INT_MAX;
  writeWritingCondition();
  SaveViewImage(dataPaths, SurfaceWindow::Main);
  EXPECT_TRUE(std::filesystem::exists(dataPaths.runFolder / "writing_condition(2147483647).txt"));
  EXPECT_TRUE(std::filesystem::exists(dataPaths.runFolder / "optic(2147483647).jpg"));
  EXPECT_EQ(writingConditionCounter, INT_MIN);
  EXPECT_EQ(opticNumber, INT_MIN);
}

}  // namespace
