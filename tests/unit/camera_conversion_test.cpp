// Raw BayerRG8 frames to the bottom-up display picture, and the test pattern.
#include <gtest/gtest.h>

#include <vector>

#include "camera_test_support.h"

namespace {

constexpr int kWidth = 2464;
constexpr int kRowBytes = 4928;  // one display row
using Bgr = std::vector<int>;

class Conversion : public CameraTest {
 protected:
  void SetUp() override {
    CameraTest::SetUp();
    raw.assign(camera.frameBytes, 0);
    target.assign(camera.frameBytes, 0xAB);
  }
  // Sets the 2 x 2 cell whose top-left sample is raw[i].
  void setCell(int i, uint8_t red, uint8_t greenB, uint8_t greenA, uint8_t blue) {
    raw[i] = red;
    raw[i + 1] = greenB;
    raw[i + kWidth] = greenA;
    raw[i + kWidth + 1] = blue;
  }
  // A display pixel's blue, green and red bytes; memory row 0 is the bottom of the picture.
  Bgr bgr(int memoryRow, int column) const {
    const uint8_t* p = &target[memoryRow * kRowBytes + column * 4];
    return {p[0], p[1], p[2]};
  }
  std::vector<uint8_t> raw;
  std::vector<uint8_t> target;
};

// Every cell of a noisy frame against the per-cell rule (blue the bottom-right sample,
// green the mean of the two others, red the top-left; raw row pair 0 in the last display
// row), so that no lane of the wide loop can mix up its samples; the reserved byte stays.
TEST_F(Conversion, EveryCellOfANoisyFrameFollowsTheCellRule) {
  for (size_t i = 0; i < raw.size(); ++i) raw[i] = static_cast<uint8_t>((i * 2654435761u) >> 13);
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  for (int y = 0; y < 2054; y += 2) {
    for (int x = 0; x < kWidth; x += 2) {
      const int i = y * kWidth + x;
      const Bgr expected = {raw[i + kWidth + 1], (raw[i + kWidth] + raw[i + 1]) >> 1, raw[i]};
      ASSERT_EQ(bgr(1027 - y / 2, x / 2), expected) << "raw row " << y << ", column " << x;
      ASSERT_EQ(target[(1027 - y / 2) * kRowBytes + 2 * x + 3], 0xAB);
    }
  }
}

TEST_F(Conversion, BlueOnlyKeepsTheBottomRightSampleAndZeroesTheRest) {
  setCell(0, 10, 20, 30, 40);
  blueOnly = 1;
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  EXPECT_EQ(bgr(1027, 0), (Bgr{40, 0, 0}));
  EXPECT_EQ(camera.red, 0);
}

// The source clamp stops one row pair short, so the lowest display row repeats the cell
// at the clamp (row 2053, column 2463) across its width.
TEST_F(Conversion, LastRawRowPairIsClampedToOneRepeatedCell) {
  const int clamp = static_cast<int>(camera.frameBytes) - 2 * kWidth - 1;
  setCell(clamp, 90, 100, 110, 120);
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  for (int column : {0, 600, 1231}) EXPECT_EQ(bgr(0, column), (Bgr{120, 105, 90})) << column;
  EXPECT_EQ(camera.sourceIndex, clamp);
}

using TestPattern = CameraTest;

TEST_F(TestPattern, ShiftsByOneBytePerFailedGrabAndWrapsAt100WithTheLaserOn) {
  std::vector<uint8_t> first(camera.frameBytes), second(camera.frameBytes);
  grabFailureCount = 7;
  FillTestPattern(camera, first.data());
  grabFailureCount = 8;
  FillTestPattern(camera, second.data());
  for (int x : {0, 9, 500, 2000}) EXPECT_EQ(second[x], first[x + 1]) << x;
  // Row 201 (y div 2 = 100) at column 1: 100 + 0 with the laser off.
  EXPECT_EQ(second[201 * kWidth + 1], 100);

  laser.laserOn = 1;
  FillTestPattern(camera, second.data());
  EXPECT_EQ(second[201 * kWidth + 1], 0);
  EXPECT_EQ(second[1000 - 8], 0) << "(x + count) div 10 = 100 wraps to 0";
  laser.laserOn = 0;
  FillTestPattern(camera, second.data());
  EXPECT_EQ(second[1000 - 8], 100);
}

}  // namespace
