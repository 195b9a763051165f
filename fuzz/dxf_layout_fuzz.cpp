// A DXF drawing as the fuzzer writes it: read as "Import Layout" reads it, then the
// shapes of every layer rasterized (box-centred when the first byte's
// high bit is set) and the writing area's picture written once (fuzz_support.h: the
// cells and the budgets). A refusal is a message, never a crash or a hang.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_support.h"
#include "pattern/layout_import.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LayoutDocument document;
  if (!openLayoutFile(writeInputFile("layout.dxf", data, size), document).empty()) return 0;
  bool written = false;
  for (const std::string& layer : document.layers()) {
    LayoutShapes shapes;
    setFuzzLayoutBudgets(shapes);
    if (dxfShapes(document.drawing, layer, 0.5, shapes).empty())
      rasterizeFuzzLayout(shapes, data[0], written);
  }
  return 0;
}
