// Speed of the camera path: the Bayer conversion of one frame beside a plain copy of the
// same number of bytes (goal: at most twice the copy), and one virtual-camera frame
// (goal: at most 50 ms).
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "camera/Basler_camera.h"
#include "sim/virtual_camera.h"

namespace {

std::vector<uint8_t> rawFrame() {
  std::vector<uint8_t> raw(camera.frameBytes);
  for (size_t i = 0; i < raw.size(); ++i) raw[i] = static_cast<uint8_t>(i * 31 + (i >> 11));
  return raw;
}

void BM_CopyOneFrame(benchmark::State& state) {
  const std::vector<uint8_t> raw = rawFrame();
  std::vector<uint8_t> target(camera.frameBytes);
  for (auto _ : state) {
    std::memcpy(target.data(), raw.data(), raw.size());
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * camera.frameBytes);
}
BENCHMARK(BM_CopyOneFrame)->Unit(benchmark::kMillisecond);

void BM_ConvertBayerToDisplay(benchmark::State& state) {
  const std::vector<uint8_t> raw = rawFrame();
  std::vector<uint8_t> target(camera.frameBytes);
  for (auto _ : state) {
    ConvertBayerToDisplay(camera, raw.data(), target.data());
    benchmark::DoNotOptimize(target.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * camera.frameBytes);
}
BENCHMARK(BM_ConvertBayerToDisplay)->Unit(benchmark::kMillisecond);

void BM_VirtualCameraFrame(benchmark::State& state) {
  std::vector<uint8_t> raw(static_cast<size_t>(kVirtualSensorWidth) * kVirtualSensorHeight);
  StationView view;
  view.lampOn = true;
  view.laserOn = true;
  view.laserPwm = 200;
  view.zUm = kVirtualFocusZUm + 40.0;  // a blurred frame: the blur is the costly part
  std::vector<ExposureSegment> written = {{-100, 0, 100, 0, 180}, {0, -100, 0, 100, 180}};
  for (auto _ : state) {
    view.xUm += 1.5;
    renderVirtualFrame(view, written, VirtualImaging{}, raw.data());
    benchmark::DoNotOptimize(raw.data());
  }
}
BENCHMARK(BM_VirtualCameraFrame)->Unit(benchmark::kMillisecond);

}  // namespace
