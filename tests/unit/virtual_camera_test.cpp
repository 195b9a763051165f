// The virtual camera's picture follows the stage and the lamp (its focus is checked
// end to end, through the live view).
#include "sim/virtual_camera.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr int kWidth = kVirtualSensorWidth;
constexpr int kHeight = kVirtualSensorHeight;

std::vector<uint8_t> render(const StationView& view) {
  std::vector<uint8_t> raw(static_cast<size_t>(kWidth) * kHeight);
  renderVirtualFrame(view, {}, VirtualImaging{}, raw.data());
  return raw;
}

long brightness(const std::vector<uint8_t>& raw) {
  long sum = 0;
  for (size_t i = 0; i < raw.size(); i += 97) sum += raw[i];
  return sum;
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
