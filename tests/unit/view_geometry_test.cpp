// The view geometry: the station's rectangles and counts from zoom, magnification and pitch.
#include "station/view_geometry.h"

#include <cmath>

#include "pattern/display_layers.h"
#include "station_fixture.h"

namespace {

using Corners = std::vector<int>;
Corners corners(const IntRect& r) { return {r.left, r.top, r.right, r.bottom}; }

using ViewGeometry = StationTest;

TEST_F(ViewGeometry, TheConstructedStationCoversTheDisplayUntilTheFirstRecompute) {
  EXPECT_EQ(corners(station.cameraRect), (Corners{0, 0, 1232, 1028}));
  EXPECT_EQ(dataPaths.cellMarks[247].size(), 206u);
  EXPECT_EQ(recomputeViewGeometry(station), 104);
  EXPECT_EQ(corners(station.writingAreaRect), (Corners{116, 14, 1116, 1014}));
  EXPECT_EQ(corners(station.cameraRect), (Corners{247, 206, 984, 821}));
  EXPECT_EQ(station.cellCount, 51088);
  EXPECT_EQ(station.previewHeight, 332);
  station.cellPitchUm = 2.0;
  recomputeViewGeometry(station);
  EXPECT_EQ(station.cellPixels, 3);
  EXPECT_EQ(station.cellsX, 247 / 3 + 1);
  station.zoom = station.zoomReset;  // the camera view fills the display
  recomputeViewGeometry(station);
  EXPECT_DOUBLE_EQ(station.cameraScale, 1.0);
  EXPECT_EQ(corners(station.cameraRect), (Corners{0, 0, 1232, 1028}));
}

TEST_F(ViewGeometry, ZoomIsClampedBetweenMagnificationFloorAndSixZoomIns) {
  station.magnification = 10;
  station.zoom = 0.01;
  recomputeViewGeometry(station);
  EXPECT_DOUBLE_EQ(station.zoom, std::pow(0.75, 11));
  for (int i = 0; i < 30; ++i) changeZoom(1);
  EXPECT_DOUBLE_EQ(station.zoom, std::pow(4.0 / 3.0, 6));
  changeZoom(-1);
  EXPECT_DOUBLE_EQ(station.zoom, std::pow(4.0 / 3.0, 6) * 0.75);
}

TEST_F(ViewGeometry, AllShowsTheWritingAreaOnlyWithAPatternLayer) {
  station.magnification = 2;
  maskImage.valid = alignmentMarkImage.valid = 0;
  changeZoom(10);
  EXPECT_EQ(station.zoom, 1.0);
  alignmentMarkImage.valid = 1;
  changeZoom(10);
  EXPECT_EQ(station.zoom, 0.5);
  EXPECT_EQ(corners(station.scaledAreaRect), (Corners{116, 14, 1116, 1014}));
  changeZoom(7);
  EXPECT_EQ(station.zoom, 0.5);
}

}  // namespace
