// A DXF drawing as the fuzzer writes it: read, then every layer
// rasterized at a magnification taken from the first byte, and the writing area's
// picture written, as "Import Layout" does. A refusal is a message, never a crash.
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_support.h"
#include "pattern/layout_import.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LayoutDocument document;
  if (!openLayoutFile(writeInputFile("layout.dxf", data, size), document).empty()) return 0;
  const double cellUm = size > 0 ? 1 + data[0] % 10 : 1;
  bool written = false;  // the picture once an input: it is the same work for every layer
  for (const std::string& layer : document.layers()) {
    LayoutRaster raster;
    if (rasterizeLayoutLayer(document, layer, "", cellUm, (data[0] & 0x80) != 0, raster).empty() &&
        !written)
      written = writeWritingAreaPicture(raster, writeInputFile("layout.bmp", nullptr, 0));
  }
  return 0;
}
