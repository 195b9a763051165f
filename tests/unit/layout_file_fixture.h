// GDSII streams written byte by byte for the layout tests, and "Import Layout" played as
// the operator plays it: the file picked, the dialog's choices, OK.
#pragma once

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "app/command_dispatch.h"
#include "resources/resource.h"
#include "sim/recorded_dialog.h"
#include "sim/recorded_display.h"

namespace gdsii {

// Records: 2-byte length, record type, data type, big-endian values.
inline std::string be(uint64_t value, int bytes) {
  std::string out;
  for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
  return out;
}
inline std::string record(int type, int dataType, std::string body = "") {
  if (body.size() % 2 != 0) body += '\0';  // names are padded to an even length
  return be(body.size() + 4, 2) + static_cast<char>(type) + static_cast<char>(dataType) + body;
}
inline std::string real8(double value) {  // positive values: exponent of 16 biased by 64
  int exponent = 64;
  while (value >= 1) value /= 16, ++exponent;
  while (value < 1.0 / 16) value *= 16, --exponent;
  return be((static_cast<uint64_t>(exponent) << 56) | static_cast<uint64_t>(std::ldexp(value, 56)),
            8);
}
inline std::string cell(const std::string& name, const std::string& elements) {
  return record(0x05, 2, std::string(24, '\0')) + record(0x06, 6, name) + elements +
         record(0x07, 0);
}
// A rectangle from (left, bottom) to (right, top) um on layer 1/0 (1 nm units).
inline std::string rectangle(int left, int bottom, int right, int top) {
  std::string xy;
  const int corners[5][2] = {
      {left, bottom}, {right, bottom}, {right, top}, {left, top}, {left, bottom}};
  for (const auto& c : corners)
    xy += be(static_cast<uint32_t>(c[0] * 1000), 4) + be(static_cast<uint32_t>(c[1] * 1000), 4);
  return record(0x08, 0) + record(0x0D, 2, be(1, 2)) + record(0x0E, 2, be(0, 2)) +
         record(0x10, 3, xy) + record(0x11, 0);
}
inline std::string square(int x, int y, int side) { return rectangle(x, y, x + side, y + side); }
inline std::string reference(const std::string& name) {
  return record(0x0A, 0) + record(0x12, 6, name) + record(0x10, 3, std::string(8, '\0')) +
         record(0x11, 0);
}
inline std::string library(const std::string& cells) {
  return record(0x00, 2, be(600, 2)) + record(0x01, 2, std::string(24, '\0')) +
         record(0x02, 6, "LIB") + record(0x03, 5, real8(0.001) + real8(1e-9)) + cells +
         record(0x04, 0);
}

}  // namespace gdsii

// Writes bytes to file, then "Import Layout": the file picked, the layer and top-cell
// entries, the centre box, the overlap, and OK.
inline void importLayoutFile(const std::filesystem::path& file, const std::string& bytes,
                             int layer = 0, int top = 0, bool centre = false,
                             const std::string& overlap = "0") {
  std::ofstream(file, std::ios::binary) << bytes;
  recordedQueueFileChoice(file.wstring());
  recordedDialogReset();  // a file refused before the dialog leaves its script unplayed
  recordedDialogChoose(IDC_LAYOUT_LAYER, layer);
  recordedDialogChoose(IDC_LAYOUT_TOP_CELL, top);
  if (centre) recordedDialogToggle(IDC_LAYOUT_CENTRE);
  recordedDialogType(IDC_LAYOUT_OVERLAP, overlap);
  recordedDialogPress(IDC_LAYOUT_OK);
  dispatchCommand(IDM_IMPORT_LAYOUT);
}
