// A GDSII stream as the fuzzer writes it: read as "Import Layout" reads it, then the
// shapes of every layer of every top cell rasterized (box-centred when the first byte's
// high bit is set) and the writing area's picture written once. The cells are 1 to 10 um
// (the first byte), and at least the layout's extent / 2000, so that one input stays
// fast, and the budgets of corners and placements are a million. A refusal is a message,
// never a crash or a hang.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_support.h"
#include "pattern/layout_import.h"

namespace {

// A million corners and placements: the budgets' refusal is reached within a second.
constexpr size_t kFuzzPointBudget = 1'000'000;

double cellFor(const LayoutShapes& shapes, uint8_t choice) {
  double low = 0, high = 0;
  bool first = true;
  for (const LayoutPolygon& polygon : shapes.polygons) {
    for (const LayoutPoint& p : polygon) {
      const double lo = std::min(p.x, p.y), hi = std::max(p.x, p.y);
      low = first ? lo : std::min(low, lo);
      high = first ? hi : std::max(high, hi);
      first = false;
    }
  }
  return std::max(1.0 + choice % 10, (high - low) / 2000);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LayoutDocument document;
  if (!openLayoutFile(writeInputFile("layout.gds", data, size), document).empty()) return 0;
  bool written = false;
  for (const std::string& layer : document.layers()) {
    for (const std::string& top : document.topCells()) {
      LayoutShapes shapes;
      shapes.pointBudget = kFuzzPointBudget;
      shapes.placementBudget = kFuzzPointBudget;
      shapes.pointBudget = kFuzzPointBudget;
      shapes.placementBudget = kFuzzPointBudget;
      if (!gdsiiShapes(document.library, layer, top, 0.5, shapes).empty()) continue;
      LayoutRaster raster;
      std::string message;
      if (rasterizeLayout(shapes.polygons, cellFor(shapes, data[0]), (data[0] & 0x80) != 0, raster,
                          message) &&
          !written)
        written = writeWritingAreaPicture(raster, writeInputFile("layout.bmp", nullptr, 0));
    }
  }
  return 0;
}
