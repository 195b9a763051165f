// A small PNG writer with no library: 8-bit grey or RGB, every row unfiltered, the zlib
// stream made of stored (uncompressed) deflate blocks, with CRC-32 per chunk and Adler-32
// over the data.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

struct PngPicture {
  int width = 0;
  int height = 0;
  int channels = 1;             // 1 grey, 3 RGB
  std::vector<uint8_t> pixels;  // rows top-down, width x channels bytes each
};

uint32_t pngCrc32(const uint8_t* bytes, size_t count, uint32_t crc = 0);
bool writePng(const std::filesystem::path& path, const PngPicture& picture);
