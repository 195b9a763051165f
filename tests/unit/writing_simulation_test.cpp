// The writing simulation and the zoom redraw: resampling offsets at zoom in and out, the
// blue-over-camera composition, and the zoom steps as one redraw path.
#include "pattern/writing_simulation.h"

#include <gmock/gmock.h>

#include "app/command_dispatch.h"
#include "camera/Basler_camera.h"
#include "pattern/display_layers.h"
#include "pattern_fixture.h"
#include "resources/resource.h"
#include "station/view_geometry.h"

namespace {

class Simulation : public PatternTest {
 protected:
  void SetUp() override {
    PatternTest::SetUp();
    // A target with its bottom-left cell dark and a dark cell at (125, 125).
    setCell(targetPattern, 0, 0, kDarkCell);
    setCell(targetPattern, 125, 125, kDarkCell);
  }
};

TEST_F(Simulation, AtScale1TheZoomedPatternIsTheTarget) {
  resamplePattern(targetPattern, zoomedPattern);
  EXPECT_EQ(cellGrid.zoomedWidth, 1000);
  EXPECT_TRUE(std::equal(targetPattern.cells, targetPattern.cells + 1000000, zoomedPattern.cells));
}

TEST_F(Simulation, AZoomOutStepShrinksIntoTheCentreAndAZoomInStepMagnifiesIt) {
  station.zoom = 0.75;
  resamplePattern(targetPattern, zoomedPattern);
  EXPECT_EQ(cellGrid.zoomedHeight, 750);
  EXPECT_EQ(getCell(zoomedPattern, 125, 125), kDarkCell);  // target (0, 0)
  EXPECT_EQ(darkCells(zoomedPattern), 2);
  EXPECT_EQ(getCell(zoomedPattern, 125 + 94, 125 + 94), kDarkCell);  // 94 / 0.75 = 125.3

  station.zoom = kZoomInFactor;
  resamplePattern(targetPattern, zoomedPattern);
  EXPECT_EQ(cellGrid.zoomedWidth, 1000);
  EXPECT_EQ(getCell(zoomedPattern, 0, 0), kDarkCell);  // target (125, 125)
  EXPECT_EQ(getCell(zoomedPattern, 1, 1), kDarkCell);  // 1 / 1.3333334 truncates to 0
  EXPECT_EQ(getCell(zoomedPattern, 2, 2), kBrightCell);
}

TEST_F(Simulation, ThePatternIsBlueOverTheCameraPictureAndWhiteOutsideBoth) {
  setCell(zoomedPattern, 500, 500, kDarkCell);
  setRed(displayFrame, 100, 100, 11);
  setGreen(displayFrame, 100, 100, 22);
  setBlue(displayFrame, 100, 100, 33);
  station.cameraScale = 1.0;
  station.cameraRect = {200, 200, 900, 900};
  composeSimulation(zoomedPattern, simulationImage);
  auto rgb = [](int x, int y) {
    return std::vector<int>{getRed(simulationImage, x, y), getGreen(simulationImage, x, y),
                            getBlue(simulationImage, x, y)};
  };
  EXPECT_EQ(rgb(616, 514), (std::vector<int>{0, 0, 255}));      // dark cell (500, 500)
  EXPECT_EQ(rgb(300, 300), (std::vector<int>{11, 22, 33}));     // bright: the camera
  EXPECT_EQ(rgb(100, 100), (std::vector<int>{255, 255, 255}));  // outside the camera field
}

TEST_F(Simulation, TheWholeAreaStepActsOnlyWhileTheMaskOrMarkBoxIsOn) {
  station.magnification = 2;
  station.zoom = 2.0;
  maskImage.valid = 0;
  alignmentMarkImage.valid = 0;
  changeZoom(10);
  EXPECT_DOUBLE_EQ(station.zoom, 2.0);
  alignmentMarkImage.valid = 1;
  changeZoom(10);
  EXPECT_DOUBLE_EQ(station.zoom, 0.5);
}

TEST_F(Simulation, SimulateWritingAndEveryZoomStepRedrawThePatternView) {
  paintPicture(maskImage, 0, 0, 10, 10, 0);
  for (int id : {IDM_SIMULATE_WRITING, IDC_ZOOM_IN, IDC_ZOOM_OUT, IDC_SHOW, IDC_ALL}) {
    recordedDisplayReset();
    recordedFeedbackReset();
    dispatchCommand(id);
    EXPECT_TRUE(hasLine("blit display 0,0", recordedDisplayCalls())) << id;
    EXPECT_EQ(station.cellCount, 100) << id;  // the target built anew from the pictures
  }
  EXPECT_EQ(recordedWindowPicture(SurfaceWindow::Display).size(), 1000u * 1000u * 4u);
}

}  // namespace
