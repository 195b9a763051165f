// The mask threshold on pixel buffers the fuzzer gives: a 2000 x 2000 render filled by
// repeating the input (after its first byte) is thresholded into the mask picture, and
// the target pattern is built from it and the alignment-mark picture, which holds the
// input's bytes from its start. The first byte chooses which pictures count (bit 0 the
// mask, bit 1 the mark), as the "Mask" and "Mark" boxes do.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "fuzz/tile.h"
#include "pattern/mask_import.h"
#include "pattern/pattern_stores.h"
#include "station/station.h"

namespace {
constexpr size_t kRenderBytes = static_cast<size_t>(kMaskRenderSide) * kMaskRenderSide * 4;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  freshStation();
  static std::vector<uint8_t> render(kRenderBytes);
  const uint8_t* pixels = data + 1;
  const size_t count = size - 1;
  std::fill(render.begin(), render.end(), uint8_t{0xFF});
  tile(render.data(), render.size(), pixels, count);
  const size_t pictureBytes = static_cast<size_t>(alignmentMarkImage.byteSize);
  std::fill_n(alignmentMarkImage.pixels, pictureBytes, uint8_t{0xFF});
  std::copy_n(data, std::min(size, pictureBytes), alignmentMarkImage.pixels);

  station.cellCount = thresholdMaskRender(render.data(), maskImage);
  maskImage.valid = data[0] & 1;
  alignmentMarkImage.valid = (data[0] >> 1) & 1;
  buildTargetPattern(maskImage, alignmentMarkImage, targetPattern);
  return 0;
}
