// The sample job: see sample_job.h. The PNG is written by hand (stored deflate blocks, no
// compression library), which keeps it readable by any decoder at 126 KB.
#include "app/sample_job.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <system_error>

#include "pattern/line_file.h"
#include "station/text_format.h"

namespace {

constexpr int kSide = 1000;                     // pixels each way, one a cell
constexpr int kRowBytes = 1 + (kSide + 7) / 8;  // filter byte, then 1 bit a pixel

// Dark where the sample's shapes are; x to the right, y downwards, in pixels.
bool sampleDark(int x, int y) {
  const bool rectangle = x >= 430 && x < 570 && y >= 465 && y < 535;  // inside the centre
  const int dx = x - 250;
  const int dy = y - 250;
  const bool disc = dx * dx + dy * dy < 70 * 70;
  // Apex (750, 700), base from (650, 850) to (850, 850).
  const bool triangle = y < 850 && 3 * (y - 700) >= 2 * std::abs(x - 750);
  return rectangle || disc || triangle;
}

uint32_t crc32(const uint8_t* data, size_t size, uint32_t crc = 0) {
  static const std::array<uint32_t, 256> table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t n = 0; n < 256; ++n) {
      uint32_t c = n;
      for (int k = 0; k < 8; ++k) c = (c & 1) != 0 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
      t[n] = c;
    }
    return t;
  }();
  crc = ~crc;
  for (size_t i = 0; i < size; ++i) crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

void putBig32(std::vector<uint8_t>& out, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<uint8_t>(value >> shift));
}

void putChunk(std::vector<uint8_t>& out, const char* kind, const std::vector<uint8_t>& data) {
  putBig32(out, static_cast<uint32_t>(data.size()));
  const size_t typeAt = out.size();
  out.insert(out.end(), kind, kind + 4);
  out.insert(out.end(), data.begin(), data.end());
  putBig32(out, crc32(out.data() + typeAt, out.size() - typeAt));
}

// The rows as a zlib stream of stored (uncompressed) deflate blocks.
std::vector<uint8_t> zlibStored(const std::vector<uint8_t>& raw) {
  std::vector<uint8_t> out = {0x78, 0x01};
  constexpr size_t kBlock = 65535;
  for (size_t at = 0; at < raw.size(); at += kBlock) {
    const size_t size = std::min(kBlock, raw.size() - at);
    out.push_back(at + size == raw.size() ? 1 : 0);
    out.push_back(static_cast<uint8_t>(size));
    out.push_back(static_cast<uint8_t>(size >> 8));
    out.push_back(static_cast<uint8_t>(~size));
    out.push_back(static_cast<uint8_t>(~size >> 8));
    out.insert(out.end(), raw.begin() + static_cast<std::ptrdiff_t>(at),
               raw.begin() + static_cast<std::ptrdiff_t>(at + size));
  }
  uint32_t a = 1;
  uint32_t b = 0;
  for (uint8_t byte : raw) {
    a = (a + byte) % 65521;
    b = (b + a) % 65521;
  }
  putBig32(out, (b << 16) | a);
  return out;
}

void writeIfMissing(const std::filesystem::path& path, const char* data, size_t size) {
  std::error_code error;
  if (std::filesystem::exists(path, error) || error) return;
  std::ofstream file(path, std::ios::binary);
  file.write(data, static_cast<std::streamsize>(size));
}

}  // namespace

std::vector<uint8_t> sampleMaskPng() {
  std::vector<uint8_t> raw(static_cast<size_t>(kRowBytes) * kSide, 0);
  for (int y = 0; y < kSide; ++y) {
    uint8_t* row = raw.data() + static_cast<size_t>(y) * kRowBytes;
    for (int x = 0; x < kSide; ++x) {
      if (!sampleDark(x, y)) row[1 + x / 8] |= static_cast<uint8_t>(0x80 >> (x % 8));
    }
  }
  std::vector<uint8_t> png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<uint8_t> header;
  putBig32(header, kSide);
  putBig32(header, kSide);
  header.insert(header.end(), {1, 0, 0, 0, 0});  // 1 bit, grey, deflate, no filter, plain
  putChunk(png, "IHDR", header);
  putChunk(png, "IDAT", zlibStored(raw));
  putChunk(png, "IEND", {});
  return png;
}

std::string sampleLineText() {
  // Corners in um from the display centre, y downwards: below left of the mask's centre.
  const float corners[4][2] = {{-300, 250}, {-150, 250}, {-225, 120}, {-300, 250}};
  std::string text;
  for (int i = 0; i < 3; ++i) {
    text += formatText(kLineFormat, double(corners[i][0]), double(corners[i][1]),
                       double(corners[i + 1][0]), double(corners[i + 1][1]), 1);
  }
  return text;
}

void placeSampleJob(const std::filesystem::path& folder) {
  const std::vector<uint8_t> mask = sampleMaskPng();
  writeIfMissing(folder / kSampleMaskName, reinterpret_cast<const char*>(mask.data()), mask.size());
  const std::string lines = sampleLineText();
  writeIfMissing(folder / kSampleLinesName, lines.data(), lines.size());
}
