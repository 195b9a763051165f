// Raw BayerRG8 frames to the bottom-up display picture, and the test pattern.
#include <gtest/gtest.h>

#include <vector>

#include "camera_test_support.h"

namespace {

constexpr int kWidth = 2464;
constexpr int kRowBytes = 4928;  // one display row

class Conversion : public ::testing::Test {
 protected:
  void SetUp() override {
    resetCameraWorld();
    raw.assign(camera.frameBytes, 0);
    target.assign(camera.frameBytes, 0xAB);
  }
  // Sets the 2 x 2 cell whose top-left sample is at (x, y).
  void setCell(int x, int y, uint8_t red, uint8_t greenB, uint8_t greenA, uint8_t blue) {
    raw[y * kWidth + x] = red;
    raw[y * kWidth + x + 1] = greenB;
    raw[(y + 1) * kWidth + x] = greenA;
    raw[(y + 1) * kWidth + x + 1] = blue;
  }
  const uint8_t* pixel(int memoryRow, int column) {
    return &target[memoryRow * kRowBytes + column * 4];
  }
  std::vector<uint8_t> raw;
  std::vector<uint8_t> target;
};

TEST_F(Conversion, FirstRawRowPairLandsInTheLastDisplayRow) {
  setCell(0, 0, 10, 20, 30, 40);
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  const uint8_t* p = pixel(1027, 0);
  EXPECT_EQ(p[0], 40);  // blue: bottom-right sample
  EXPECT_EQ(p[1], 25);  // the two greens averaged
  EXPECT_EQ(p[2], 10);  // red: top-left sample
  EXPECT_EQ(p[3], 0xAB) << "the reserved byte is never written";
}

TEST_F(Conversion, LastDisplayColumnComesFromRawColumns2462And2463) {
  setCell(2462, 2, 50, 60, 70, 80);
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  const uint8_t* p = pixel(1026, 1231);
  EXPECT_EQ(p[0], 80);
  EXPECT_EQ(p[1], 65);
  EXPECT_EQ(p[2], 50);
}

TEST_F(Conversion, BlueOnlyKeepsTheBottomRightSampleAndZeroesTheRest) {
  setCell(0, 0, 10, 20, 30, 40);
  blueOnly = 1;
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  const uint8_t* p = pixel(1027, 0);
  EXPECT_EQ(p[0], 40);
  EXPECT_EQ(p[1], 0);
  EXPECT_EQ(p[2], 0);
  EXPECT_EQ(camera.red, 0);
}

// The source clamp stops one row pair short, so the lowest display row repeats the cell
// at the clamp (row 2053, column 2463) across its width.
TEST_F(Conversion, LastRawRowPairIsClampedToOneRepeatedCell) {
  const int clamp = static_cast<int>(camera.frameBytes) - 2 * kWidth - 1;
  raw[clamp] = 90;
  raw[clamp + 1] = 100;
  raw[clamp + kWidth] = 110;
  raw[clamp + kWidth + 1] = 120;
  ConvertBayerToDisplay(camera, raw.data(), target.data());
  for (int column : {0, 600, 1231}) {
    const uint8_t* p = pixel(0, column);
    EXPECT_EQ(p[0], 120) << column;
    EXPECT_EQ(p[1], 105) << column;
    EXPECT_EQ(p[2], 90) << column;
  }
  EXPECT_EQ(camera.sourceIndex, clamp);
}

TEST(TestPattern, ShiftsByOneBytePerFailedGrabAndWrapsAt100WithTheLaserOn) {
  resetCameraWorld();
  std::vector<uint8_t> first(camera.frameBytes);
  std::vector<uint8_t> second(camera.frameBytes);
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
