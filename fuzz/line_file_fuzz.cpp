// The line file as the fuzzer writes it: imported (and drawn), an eraser click where the
// input's first two bytes point on the display, the stage places vector writing would
// move to, then saved as the next line file and imported again, which must give back as
// many lines as were saved.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/fuzz_support.h"
#include "jobs/vector_writing.h"
#include "pattern/line_editing.h"
#include "pattern/line_file.h"
#include "pattern/line_pattern.h"
#include "station/data_paths.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzInitialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  freshStation();
  importLines(writeInputFile("lines.txt", data, size));
  if (size >= 2) eraseLineAt({data[0] * kDisplayWidth / 256, data[1] * kDisplayHeight / 256});
  for (const LineSegment& line : linePattern.segments) {
    lineStageX(line.x1);
    lineStageY(line.y1);
    lineStageX(line.x2);
    lineStageY(line.y2);
  }
  const size_t saved = linePattern.segments.size();
  saveLines(dataPaths, buildLineText());
  importLines(dataPaths.lineFileName);
  if (linePattern.segments.size() != saved) std::abort();
  clearRunFolder();
  return 0;
}
