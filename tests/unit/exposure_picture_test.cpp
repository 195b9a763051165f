// The honest virtual station as whole jobs see it: the exposure picture a writing run leaves,
// developed from the resist's dose, against the target; the coarse pass's defocus; the laser
// spot and the developed resist on the camera.
#include "sim/exposure_picture.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>

#include "app/command_dispatch.h"
#include "camera/Basler_camera.h"
#include "camera/live_view_control.h"
#include "link/controller_commands.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"
#include "sim/virtual_camera.h"

namespace {

class ExposurePicture : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
    openWithSpeeds(2000, 2000, 500);
  }
  // Mask cells (x, y), row 0 at the bottom, where inside says so.
  static void paintMask(const std::function<bool(int, int)>& inside) {
    for (int y = 0; y < kPatternSide; ++y)
      for (int x = 0; x < kPatternSide; ++x)
        if (inside(x, y)) paintPicture(maskImage, x, y, x + 1, y + 1, 0);
  }
  // Runs "Start Writing" and reads back the picture it left beside its record.
  DevelopedArea writeAndDevelop() {
    dispatchCommand(IDC_START_WRITING);
    const int number = writingConditionCounter - 1;
    const auto folder = dataPaths.runFolder;
    EXPECT_TRUE(std::filesystem::exists(folder / formatName("writing_condition(%d).txt", number)));
    DevelopedArea developed;
    EXPECT_TRUE(loadExposurePicture(folder / formatName("exposure(%d).png", number), developed));
    return developed;
  }
  static std::string formatName(const char* format, int number) {
    char name[64];
    std::snprintf(name, sizeof name, format, number);
    return name;
  }
};

bool inDisc(int x, int y, int cx, int cy, int r) {
  return (x - cx) * (x - cx) + (y - cy) * (y - cy) < r * r;
}

// Shapes without holes across the fine centre and the coarse outside, then the same with holes:
// the picture agrees cell by cell with the target (the rectangle's top reaches the top of the
// picture, as on the display); "Show Exposure Picture" lays it over the writing area, and
// before any run says there is none.
TEST_F(ExposurePicture, ARasterRunLeavesAPictureThatAgreesWithItsTarget) {
  dispatchCommand(IDM_SHOW_EXPOSURE_PICTURE);
  EXPECT_TRUE(hasLine("message Show Exposure Picture: No exposure picture yet"));
  struct Mask {
    const char* name;
    std::function<bool(int, int)> inside;
  };
  const Mask masks[] = {
      {"shapes without holes",
       [](int x, int y) {
         return (x >= 300 && x < 560 && y >= 430 && y < 520) || inDisc(x, y, 230, 760, 120) ||
                (y >= 120 && y < 330 && std::abs(x - 760) < (330 - y) / 2);  // a triangle
       }},
      {"shapes with holes", [](int x, int y) {
         return (inDisc(x, y, 500, 500, 100) && !inDisc(x, y, 500, 500, 40)) ||
                (x >= 100 && x < 350 && y >= 100 && y < 300 &&
                 !(x >= 160 && x < 290 && y >= 150 && y < 250));
       }}};
  for (const Mask& mask : masks) {
    resetPatternStores();
    paintMask(mask.inside);
    const DevelopedArea developed = writeAndDevelop();
    const ExposureAgreement agreement = exposureAgreement(developed, targetPattern, 5);
    std::fprintf(stderr,
                 "exposure picture, %s: %.2f %% of %d fine centre cells, %.2f %% of %d coarse "
                 "outside cells\n",
                 mask.name, agreement.fineCentrePercent, agreement.fineCells,
                 agreement.coarseOutsidePercent, agreement.coarseCells);
    if (&mask == &masks[0]) {
      EXPECT_GE(agreement.fineCentrePercent, 97.0);
      EXPECT_GE(agreement.coarseOutsidePercent, 90.0);
    }
  }
  const auto started = std::chrono::steady_clock::now();
  ExposureArea area{StageXForColumn(0, 1), StageYForRow(0, 1), 1.0, kPatternSide};
  developExposure(virtualStationExposure(virtualClockNow()), area);
  std::fprintf(stderr, "developing the log took %.0f ms\n",
               std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started)
                   .count());
  // The ring's cell (500, 580) is written, its hole's centre was written over or not as the
  // picture says; the display shows the picture's grey where the mask showed, the live
  // view switched off so that its frames leave the picture there.
  dispatchCommand(IDC_VIDEO_ON);
  dispatchCommand(IDM_SHOW_EXPOSURE_PICTURE);
  EXPECT_EQ(setLiveView(kLiveViewQueryNow), 0);
  const Rgb ring = recordedScreenPixel(116 + 500, 1014 - 580);
  const Rgb outside = recordedScreenPixel(116 + 700, 1014 - 800);
  EXPECT_EQ(std::tuple(ring.red, outside.red), std::tuple(kExposureDarkGrey, kExposureLightGrey));
}

// One coarse row of blocks, a single coarse stroke about 4.4 um wide at focus: Dz = 12 um
// widens the spot, and the line to about 5.4 um (pixels of half a cell across it). The
// second run writes 100 um higher up (Dy), clear of the first.
TEST_F(ExposurePicture, TheCoarsePassDefocusWidensItsLine) {
  paintMask([](int x, int y) { return x >= 100 && x < 300 && y >= 800 && y < 805; });
  std::vector<int> widths;
  for (double dz : {0.0, 12.0}) {
    station.defocusUm = dz;
    station.offsetY = dz == 0 ? 0 : 100;
    const DevelopedArea developed = writeAndDevelop();
    int dark = 0;
    for (int y = developed.side - 2 * 830; y < developed.side - 2 * 780; ++y)
      dark += developed.pixelDark(2 * 200, y) ? 1 : 0;
    widths.push_back(dark);
  }
  EXPECT_GE(widths[0], 8);
  EXPECT_GE(widths[1], widths[0] + 2);
}

// With the lamp off the camera shows the laser spot where the laser shift puts it, as bright as
// its voltage; the resist it stood on shows developed under the lamp afterwards.
TEST_F(ExposurePicture, TheCameraShowsTheSpotAtTheLaserShiftAndTheResistItDeveloped) {
  virtualCameraReset();
  camera.gain = 20;
  camera.exposureTime = 30000.0;
  ASSERT_EQ(CameraConnect(camera), 1);
  CameraSetup(camera, 4);  // manual gain and exposure, as at start-up
  laser.laserShiftX = 300;
  laser.laserShiftY = 700;
  auto brightness = [](int x, int yUp) {
    CameraGrab(camera, 1);
    const uint8_t* p = &displayFrame.pixels[(static_cast<size_t>(yUp) * 1232 + x) * 4];
    return p[0] + p[1] + p[2];
  };
  const int resistBefore = (SwitchIllumination(1), brightness(300, 700));
  SwitchIllumination(0);
  std::vector<int> spot;
  for (double volts : {0.0, 1.0, 4.0}) {
    SetLaserVoltage(laser, volts);
    spot.push_back(brightness(300, 700));
  }
  EXPECT_LT(spot[0], 60);
  EXPECT_GT(spot[1], spot[0] + 60);
  EXPECT_GT(spot[2], spot[1] + 60);
  EXPECT_LT(brightness(616, 514), 60) << "the field's centre stays dark";
  virtualClockAdvance(2000);
  SetLaserVoltage(laser, 0.0);
  SwitchIllumination(1);
  EXPECT_LT(brightness(300, 700), resistBefore * 3 / 4);
}

}  // namespace
