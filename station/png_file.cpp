// PNG files: see png_file.h.
#include "station/png_file.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

namespace {

constexpr uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr size_t kStoredBlockMax = 65535;

void putBig32(std::vector<uint8_t>& out, uint32_t v) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<uint8_t>(v >> shift));
}

uint32_t adler32(const std::vector<uint8_t>& data) {
  uint32_t a = 1, b = 0;
  for (uint8_t byte : data) {
    a = (a + byte) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
}

void putChunk(std::vector<uint8_t>& out, const char* type, const std::vector<uint8_t>& data) {
  putBig32(out, static_cast<uint32_t>(data.size()));
  const size_t typeAt = out.size();
  out.insert(out.end(), type, type + 4);
  out.insert(out.end(), data.begin(), data.end());
  putBig32(out, pngCrc32(out.data() + typeAt, out.size() - typeAt));
}

int colourTypeOf(int channels) { return channels == 3 ? 2 : 0; }

}  // namespace

uint32_t pngCrc32(const uint8_t* bytes, size_t count, uint32_t crc) {
  static const std::array<uint32_t, 256> table = [] {
    std::array<uint32_t, 256> t{};
    for (uint32_t n = 0; n < 256; ++n) {
      uint32_t c = n;
      for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xedb88320u ^ (c >> 1) : c >> 1;
      t[n] = c;
    }
    return t;
  }();
  crc = ~crc;
  for (size_t i = 0; i < count; ++i) crc = table[(crc ^ bytes[i]) & 0xff] ^ (crc >> 8);
  return ~crc;
}

bool writePng(const std::filesystem::path& path, const PngPicture& picture) {
  const size_t rowBytes = static_cast<size_t>(picture.width) * picture.channels;
  if (picture.width <= 0 || picture.height <= 0 ||
      picture.pixels.size() != rowBytes * static_cast<size_t>(picture.height))
    return false;
  // The image data: a filter byte 0 before every row.
  std::vector<uint8_t> raw;
  raw.reserve((rowBytes + 1) * picture.height);
  for (int y = 0; y < picture.height; ++y) {
    raw.push_back(0);
    const auto row = picture.pixels.begin() + static_cast<std::ptrdiff_t>(rowBytes * y);
    raw.insert(raw.end(), row, row + static_cast<std::ptrdiff_t>(rowBytes));
  }
  std::vector<uint8_t> zlib = {0x78, 0x01};
  for (size_t at = 0; at < raw.size() || at == 0; at += kStoredBlockMax) {
    const size_t count = std::min(kStoredBlockMax, raw.size() - at);
    const bool last = at + count >= raw.size();
    zlib.push_back(last ? 1 : 0);  // stored block, final or not
    zlib.push_back(static_cast<uint8_t>(count));
    zlib.push_back(static_cast<uint8_t>(count >> 8));
    zlib.push_back(static_cast<uint8_t>(~count));
    zlib.push_back(static_cast<uint8_t>(~count >> 8));
    zlib.insert(zlib.end(), raw.begin() + static_cast<std::ptrdiff_t>(at),
                raw.begin() + static_cast<std::ptrdiff_t>(at + count));
    if (last) break;
  }
  putBig32(zlib, adler32(raw));

  std::vector<uint8_t> header;
  putBig32(header, static_cast<uint32_t>(picture.width));
  putBig32(header, static_cast<uint32_t>(picture.height));
  header.insert(header.end(), {8, static_cast<uint8_t>(colourTypeOf(picture.channels)), 0, 0, 0});
  std::vector<uint8_t> file(std::begin(kSignature), std::end(kSignature));
  putChunk(file, "IHDR", header);
  putChunk(file, "IDAT", zlib);
  putChunk(file, "IEND", {});
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  return static_cast<bool>(out);
}
