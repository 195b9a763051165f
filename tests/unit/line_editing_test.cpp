// Drawing and erasing vector lines with the pointer, on the recorded display at zoom 1,
// where the scaled writing area is (116, 14) - (1116, 1014) and the display centre
// (616, 514) is 0 um.
#include "pattern/line_editing.h"

#include <tuple>

#include "app/command_dispatch.h"
#include "pattern/display_layers.h"
#include "pattern/line_display.h"
#include "resources/resource.h"
#include "sim/recorded_display.h"
#include "station/view_geometry.h"
#include "station_fixture.h"

namespace {

using Calls = std::vector<std::string>;

class LineEditing : public StationTest {
 protected:
  void SetUp() override {
    StationTest::SetUp();
    station.zoom = 1.0;
    recomputeViewGeometry(station);
    recordedDisplayReset();
  }

  static void expectSegment(const LineSegment& s, float x1, float y1, float x2, float y2, int w) {
    EXPECT_EQ(std::tuple(s.x1, s.y1, s.x2, s.y2, s.width), std::tuple(x1, y1, x2, y2, w));
  }

  static Calls drawingCalls() {
    Calls drawn;
    for (const std::string& call : recordedDisplayCalls())
      if (call.rfind("on window", 0) != 0) drawn.push_back(call);
    return drawn;
  }
};

TEST_F(LineEditing, ClicksInsideTheAreaChainMicrometreSegmentsUntilARightClick) {
  leftClick({316, 314});
  pointerMove({416, 314});
  leftClick({416, 314});
  setWidthClass(10);
  pointerMove({416, 414});
  leftClick({416, 414});
  rightClick();

  ASSERT_EQ(linePattern.segments.size(), 2u);
  expectSegment(linePattern.segments[0], -300, -200, -200, -200, 3);
  expectSegment(linePattern.segments[1], -200, -200, -200, -100, 10);
  EXPECT_FALSE(linePattern.drawing);
  EXPECT_EQ(
      drawingCalls(),
      (Calls{"invert display 316,314-316,314", "invert display 316,314-416,314",
             "line display 316,314-416,314 width 3 pen 0000ff", "invert display 416,314-416,314",
             "invert display 416,314-416,414", "line display 416,314-416,414 width 10 pen 0000ff",
             "invert display 416,414-416,414"}));

  // A click on the area's edge is outside (the test is strict) and ends a chain; with line
  // drawing off nothing starts.
  leftClick({316, 314});
  leftClick({116, 314});
  EXPECT_FALSE(linePattern.drawing);
  linePattern.active = 0;
  leftClick({516, 314});
  EXPECT_FALSE(linePattern.drawing);

  // At zoom 2 a pixel is half a micrometre and the pen twice the width.
  linePattern.active = 1;
  station.zoom = 2.0;
  recomputeViewGeometry(station);
  leftClick({617, 515});
  leftClick({627, 520});
  ASSERT_EQ(linePattern.segments.size(), 3u);
  expectSegment(linePattern.segments[2], 0.5f, 0.5f, 5.5f, 3.0f, 10);
  EXPECT_EQ(drawingCalls().back(), "line display 617,515-627,520 width 20 pen 0000ff");
}

// At zoom 1 a line from 0.9 um is drawn from pixel 616 (0.9 cut to 0 um first), and tested
// by the eraser from 616 as well (616.9 cut); to 10.7 um it is drawn to 626, tested to 625.
TEST_F(LineEditing, TheEraserTestsTheUntruncatedEndsWithinThreePixels) {
  linePattern.segments = {{0.9f, 0.0f, 10.7f, 0.0f, 1}};
  EXPECT_EQ(drawingPixel(0.9f, 0.0f).x, 616);
  EXPECT_EQ(drawingPixel(10.7f, 0.0f).x, 626);
  setWidthClass(1);
  startErasing();
  leftClick({612, 514});  // 4 pixels before the first tested pixel
  leftClick({629, 517});  // 4 past the last (625)
  leftClick({620, 518});  // 4 below
  EXPECT_EQ(linePattern.segments.size(), 1u);
  leftClick({613, 511});
  EXPECT_TRUE(linePattern.segments.empty());
  EXPECT_EQ(drawingCalls(), (Calls{"line main 616,514-626,514 width 1 pen dcdcdc"}));
}

TEST_F(LineEditing, TheEraserFindsVerticalAndWildLinesButNeverAPointAndTakesOneAClick) {
  linePattern.segments = {{0.2f, 0.0f, 0.4f, 0.0f, 3},  // both ends on pixel 616
                          {0.0f, -50.0f, 0.0f, 50.0f, 3},
                          {-50.0f, 0.0f, 50.0f, 0.0f, 6}};
  startErasing();
  leftClick({616, 514});
  ASSERT_EQ(linePattern.segments.size(), 2u);
  EXPECT_FLOAT_EQ(linePattern.segments[0].x1, 0.2f) << "the point stays";
  EXPECT_FLOAT_EQ(linePattern.segments[1].x1, -50.0f) << "the vertical line went first";
  leftClick({616, 514});
  EXPECT_EQ(linePattern.segments.size(), 1u);

  // A line file may hold any number: such lines are drawn and tested far off the display.
  linePattern.segments = {{-3e38f, 1e30f, 3e38f, -1e30f, 3}, {0, 0, 1e12f, 0, 3}};
  drawLines(SurfaceWindow::Display);
  leftClick({620, 514});
  ASSERT_EQ(linePattern.segments.size(), 1u);
  EXPECT_EQ(linePattern.segments[0].x1, -3e38f);
}

// "Erase" shows the cross at once, before the pointer moves onto the display.
TEST_F(LineEditing, WidthButtonsAndEraseCheckTheirRadioAndSwitchErasing) {
  dispatchCommand(IDC_LINE_ERASE);
  EXPECT_EQ(linePattern.erasing, 1);
  dispatchCommand(IDC_LINE_WIDTH_6);
  EXPECT_EQ(linePattern.erasing, 0);
  dispatchCommand(IDC_LINE_WIDTH_10);
  EXPECT_EQ(linePattern.widthClass, 10);
  EXPECT_EQ(recordedCalls(), (Calls{"radio 2105-2109: 2109", "cursor cross",
                                    "radio 2105-2109: 2107", "radio 2105-2109: 2108"}));
}

TEST_F(LineEditing, TheLinesAreRedrawnWithTheLayersOnlyWhileTheLinesBoxIsChecked) {
  linePattern.segments = {{0, 0, 10, 0, 3}};
  changeZoom(0);
  // The lines go on top of the pattern layers.
  EXPECT_EQ(drawingCalls().back(), "line display 616,514-626,514 width 3 pen 0000ff");
  recordedDisplayReset();
  dispatchCommand(IDC_LINES_LAYER);
  changeZoom(0);
  for (const std::string& call : drawingCalls()) EXPECT_NE(call.rfind("line ", 0), 0u) << call;
}

}  // namespace
