// The virtual camera's picture follows the stage, the focus and the lamp.
#include "sim/virtual_camera.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace {

constexpr int kWidth = kVirtualSensorWidth;
constexpr int kHeight = kVirtualSensorHeight;

std::vector<uint8_t> render(const StationView& view) {
  std::vector<uint8_t> raw(static_cast<size_t>(kWidth) * kHeight);
  renderVirtualFrame(view, {}, VirtualImaging{}, raw.data());
  return raw;
}

// Differences between horizontally neighbouring red samples: the focus measure's idea.
long contrast(const std::vector<uint8_t>& raw) {
  long sum = 0;
  for (int y = 0; y < kHeight; y += 8) {
    for (int x = 0; x + 4 < kWidth; x += 4) {
      sum += std::abs(raw[y * kWidth + x] - raw[y * kWidth + x + 4]);
    }
  }
  return sum;
}

long brightness(const std::vector<uint8_t>& raw) {
  long sum = 0;
  for (size_t i = 0; i < raw.size(); i += 97) sum += raw[i];
  return sum;
}

TEST(VirtualCamera, SharpAtTheFocusHeightAndBlurredAwayFromIt) {
  StationView view;
  view.lampOn = true;
  view.zUm = kVirtualFocusZUm;
  const long sharp = contrast(render(view));
  view.zUm = kVirtualFocusZUm + 60.0;
  const long blurred = contrast(render(view));
  EXPECT_GT(sharp, 3 * blurred);
}

TEST(VirtualCamera, ThePictureMovesWithTheStageAndDimsWithoutTheLamp) {
  StationView view;
  view.lampOn = true;
  const std::vector<uint8_t> before = render(view);
  view.xUm = 10 * kVirtualFieldUm / (kWidth / 4);  // ten texels of four samples
  const std::vector<uint8_t> after = render(view);
  for (int y : {0, 1000, 2055}) {
    for (int x : {0, 800, 2000}) {
      EXPECT_EQ(after[y * kWidth + x], before[y * kWidth + x + 40]) << x << "," << y;
    }
  }
  view.lampOn = false;
  EXPECT_LT(brightness(render(view)) * 5, brightness(after));
}

}  // namespace
