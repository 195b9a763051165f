// Faults of the board and the camera, each met by a whole operation on the virtual station:
// what the program must do by its design when a reply is lost, late, cut, doubled or
// garbled, when the board hangs up under a move or a job, when a limit switch stops a
// stroke, and when the camera does not open, grab, fit or settle.
#include <cstring>
#include <functional>

#include "app/command_dispatch.h"
#include "camera/camera_commands.h"
#include "camera_test_support.h"
#include "link/controller_commands.h"
#include "link/stage_motion.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"

namespace {

class BoardFaultTest : public LinkTest {
 protected:
  // A fresh board behind a freshly opened link, with a two-line job and no mask.
  void freshStation() {
    CloseSerialLink(serialLink);
    serialLink = SerialLink();
    laser = LaserOutput();
    virtualSerialReset();
    openWithSpeeds(2000, 2000, 500);
    resetPatternStores();
    maskImage.valid = alignmentMarkImage.valid = 0;
    linesEnabled = 1;
    linePattern = LinePattern();
    linePattern.active = 1;
    linePattern.segments = {{0, 0, 300, 0, 1}, {300, 0, 300, 200, 1}};
    station.line1Speed = 100;
  }
  static double exposedRightUm() {
    double right = -1e9;
    for (const BoardExposure& e : virtualSerialBoard().exposure)
      right = std::max({right, e.x0Um, e.x1Um});
    return right;
  }
};

// Whatever the replies do, the run ends within its waits' time-outs, the laser ends at 0 V
// on the board and in the program, the stage is sent back, and a wait that could not read
// its end says so with its time-out text. A limit switch inside a stroke stops the stage
// there: nothing is written beyond it, and the run still ends dark.
TEST_F(BoardFaultTest, ARunEndsDarkWhateverTheRepliesDo) {
  struct Case {
    const char* name;
    std::function<void(VirtualBoard&)> fault;
    bool waitsRunOut;
  };
  const Case cases[] = {
      {"none", [](VirtualBoard&) {}, false},
      {"every reply dropped", [](VirtualBoard& b) { b.faults.dropEveryNthReply = 1; }, true},
      {"replies 5 s late", [](VirtualBoard& b) { b.faults.delayRepliesMs = 5000; }, true},
      {"replies cut to 1 byte", [](VirtualBoard& b) { b.faults.truncateRepliesTo = 1; }, false},
      {"replies doubled", [](VirtualBoard& b) { b.faults.duplicateReplies = true; }, false},
      {"replies garbled", [](VirtualBoard& b) { b.faults.garbleReplies = true; }, true},
      {"noise before replies", [](VirtualBoard& b) { b.faults.garbage = true; }, false},
      {"X switch inside the first line",
       [](VirtualBoard& b) { b.axes[0].maxMachineSteps = static_cast<int64_t>(1150 * 6.4); },
       false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    freshStation();
    laser.laserShiftX = 1000;
    c.fault(virtualSerialBoard());
    recordedFeedbackReset();
    const uint64_t start = virtualClockNow();
    dispatchCommand(IDC_START_WRITING);
    EXPECT_LT(virtualClockNow() - start, 60'000u);
    EXPECT_TRUE(hasLine("box Progress: All Writings finished"));
    EXPECT_EQ(laser.laserVoltage, 0.0);
    EXPECT_EQ(boardPwm(virtualSerialBoard(), kBoardLaserChannel), 0);
    EXPECT_EQ(writingActive, 0);
    EXPECT_EQ(hasLine("status: time passed: "), c.waitsRunOut);
    EXPECT_LE(exposedRightUm(), virtualSerialBoard().axes[0].maxMachineSteps / 6.4 + 0.5);
    EXPECT_FALSE(virtualSerialBoard().exposure.empty());
    const std::vector<std::string> moves = sentCommands("mM");
    ASSERT_GE(moves.size(), 2u);
    EXPECT_EQ(joined(moves, moves.size() - 2), "m0,M0") << "the stage is sent back";
  }
}

// The board hangs up in the middle of a Z move, a raster job and a vector job: the failed
// write fails the link, later moves only update the program's model, every wait ends at its
// time-out, the run reaches its end with the laser at 0 V in the program, and a new open
// finds no port.
TEST_F(BoardFaultTest, AHangUpFailsTheLinkAndEverythingAfterItOnlyUpdatesTheModel) {
  struct Case {
    const char* name;
    std::function<void()> operation;
  };
  const Case cases[] = {
      {"Z move", [] { MoveAxisAndWait(serialLink, 2, 400.0); }},
      {"vector job", [] { dispatchCommand(IDC_START_WRITING); }},
      {"raster job",
       [] {
         linesEnabled = 0;
         maskImage.valid = 1;
         paintPicture(maskImage, 480, 480, 540, 520, 0);
         dispatchCommand(IDC_START_WRITING);
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    freshStation();
    VirtualBoard& board = virtualSerialBoard();
    // Mid-way: the Z move's own command, or the twentieth command of a job.
    const int hangUpAt =
        static_cast<int>(board.commands.size()) + (std::strcmp(c.name, "Z move") == 0 ? 1 : 20);
    board.faults.hangUpAfterCommands = hangUpAt;
    const uint64_t start = virtualClockNow();
    c.operation();
    EXPECT_TRUE(board.hungUp);
    EXPECT_EQ(static_cast<int>(board.commands.size()), hangUpAt);
    EXPECT_EQ(serialLink.failed, 1);
    EXPECT_LT(virtualClockNow() - start, 120'000u);
    EXPECT_EQ(laser.laserVoltage, 0.0);
    const std::string written = virtualSerialWritten();
    MoveAxisAndWait(serialLink, 0, 777.0);
    EXPECT_DOUBLE_EQ(serialLink.positionUm[0], 777.0);
    EXPECT_DOUBLE_EQ(QueryAxisPosition(serialLink, 0), 777.0);
    EXPECT_EQ(virtualSerialWritten(), written);
    EXPECT_EQ(OpenSerialLink(serialLink, true), 0);
  }
}

class CameraFaultTest : public CameraTest {};

// The camera that is missing, held by another program, throwing at its grabs or sending a
// frame of another size leaves the picture to the moving test pattern and says so on the
// status line; a one-shot adjustment that never settles ends after its 101 frames as
// "No camera detected" instead of holding the program.
TEST_F(CameraFaultTest, TheTestPatternStandsInForEveryPictureTheCameraCannotGive) {
  struct Case {
    const char* name;
    std::function<void()> fault;
    const char* setupStatus;  // after the start-up's set-up
    bool grabFails;
  };
  const Case cases[] = {
      {"missing", [] { virtualCameraSetPresent(false); }, "No camera detected", true},
      {"held by another program", [] { virtualCameraFailOpen(true); }, "No camera detected", false},
      {"grabs throw", [] { virtualCameraGrabsThrow(true); }, "exposure time: 30000.0", true},
      {"a frame of another size",
       [] { virtualCameraUseFrameBytes(std::vector<uint8_t>(1232 * 1028 * 3, 90)); },
       "exposure time: 30000.0", true},
  };
  std::vector<uint8_t> pattern(camera.frameBytes);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    virtualCameraReset();
    camera.connected = 0;
    recordedFeedbackReset();
    c.fault();
    if (CameraConnect(camera) != 0) {
      CameraSetup(camera, 1);
      CameraSetup(camera, 4);
    }
    EXPECT_TRUE(hasLine(std::string("status: ") + c.setupStatus));
    const int failures = grabFailureCount;
    CameraGrab(camera, 1);
    EXPECT_EQ(grabFailureCount, failures + (c.grabFails ? 1 : 0));
    EXPECT_EQ(hasLine("status: Fail in Grabbing"), c.grabFails);
    if (c.grabFails) {
      FillTestPattern(camera, pattern.data());
      EXPECT_EQ(std::memcmp(displayFrame.pixels, pattern.data(), pattern.size()), 0);
    }
  }
  virtualCameraReset();
  virtualCameraOneShotNeverSettles(true);
  ASSERT_EQ(CameraConnect(camera), 1);
  recordedFeedbackReset();
  const uint64_t start = virtualClockNow();
  CameraSetup(camera, 2);
  EXPECT_TRUE(hasLine("status: No camera detected"));
  EXPECT_EQ(std::count(virtualCameraLog().begin(), virtualCameraLog().end(), "grab one"), 101);
  EXPECT_LT(virtualClockNow() - start, 101u * 100u + 1000u);
}

}  // namespace
