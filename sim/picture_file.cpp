// BMP and PNG files into picture records: see picture_file.h.
#include "sim/picture_file.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

uint32_t readLe(const Bytes& b, size_t at, int count) {
  uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 8 | b[at + i];
  return value;
}

uint32_t readBe32(const Bytes& b, size_t at) {
  return uint32_t(b[at]) << 24 | uint32_t(b[at + 1]) << 16 | uint32_t(b[at + 2]) << 8 | b[at + 3];
}

// Sets pixel (x, row from the top) of a picture whose rows are kept bottom-up.
void setPixel(RecordedPicture& p, int x, int yTop, uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
  uint8_t* to = &p.pixels[(static_cast<size_t>(p.height - 1 - yTop) * p.width + x) * 4];
  to[0] = b;
  to[1] = g;
  to[2] = r;
  to[3] = a;
}

bool startPicture(RecordedPicture& p, int64_t width, int64_t height) {
  constexpr int64_t kLargestSide = 20000;
  if (width <= 0 || height <= 0 || width > kLargestSide || height > kLargestSide) return false;
  p.width = static_cast<int>(width);
  p.height = static_cast<int>(height);
  p.pixels.assign(static_cast<size_t>(width * height * 4), 0);
  return true;
}

// Uncompressed Windows bitmaps; rows bottom-up unless the height is negative.
bool readBmp(const Bytes& b, RecordedPicture& p) {
  if (b.size() < 54 || b[0] != 'B' || b[1] != 'M') return false;
  const uint32_t dataAt = readLe(b, 10, 4), headerSize = readLe(b, 14, 4);
  const int32_t width = static_cast<int32_t>(readLe(b, 18, 4));
  const int32_t rawHeight = static_cast<int32_t>(readLe(b, 22, 4));
  const int bits = static_cast<int>(readLe(b, 28, 2));
  const uint32_t compression = readLe(b, 30, 4);
  const bool topDown = rawHeight < 0;
  const int64_t height = topDown ? -int64_t(rawHeight) : rawHeight;
  if ((compression != 0 && compression != 3) || !startPicture(p, width, height)) return false;
  if (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32) return false;
  const size_t paletteAt = 14 + headerSize;
  const size_t stride = (static_cast<size_t>(width) * bits + 31) / 32 * 4;
  if (dataAt + stride * height > b.size()) return false;
  for (int64_t row = 0; row < height; ++row) {
    const size_t at = dataAt + stride * row;
    const int yTop = static_cast<int>(topDown ? row : height - 1 - row);
    for (int x = 0; x < width; ++x) {
      if (bits >= 24) {
        const size_t px = at + static_cast<size_t>(x) * (bits / 8);
        setPixel(p, x, yTop, b[px + 2], b[px + 1], b[px], 255);
        continue;
      }
      const size_t bit = static_cast<size_t>(x) * bits;
      const int index = (b[at + bit / 8] >> (8 - bits - bit % 8)) & ((1 << bits) - 1);
      const size_t entry = paletteAt + static_cast<size_t>(index) * 4;
      if (entry + 3 > b.size()) return false;
      setPixel(p, x, yTop, b[entry + 2], b[entry + 1], b[entry], 255);
    }
  }
  return true;
}

// The deflate stream of a PNG's zlib data (RFC 1951): stored, fixed and dynamic blocks.
class Inflater {
 public:
  explicit Inflater(const Bytes& in) : in_(in) {}

  bool run(Bytes& out) {
    if (in_.size() < 2) return false;
    pos_ = 2;  // the zlib header
    for (bool last = false; !last;) {
      last = bits(1) == 1;
      const int type = static_cast<int>(bits(2));
      if (type == 0) {
        bitCount_ = 0;
        if (pos_ + 4 > in_.size()) return false;
        const uint32_t length = readLe(in_, pos_, 2);
        pos_ += 4;
        if (pos_ + length > in_.size()) return false;
        out.insert(out.end(), in_.begin() + pos_, in_.begin() + pos_ + length);
        pos_ += length;
      } else if (type == 1) {
        std::array<uint8_t, 320> lengths{};
        for (int i = 0; i < 288; ++i) lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        for (int i = 288; i < 320; ++i) lengths[i] = 5;
        if (!block(out, Huffman(lengths.data(), 288), Huffman(lengths.data() + 288, 32)))
          return false;
      } else if (type == 2) {
        if (!dynamicBlock(out)) return false;
      } else {
        return false;
      }
      if (overrun_) return false;
    }
    return true;
  }

 private:
  struct Huffman {
    std::array<uint16_t, 16> counts{};
    std::vector<uint16_t> symbols;
    Huffman(const uint8_t* lengths, int n) {
      for (int i = 0; i < n; ++i) ++counts[lengths[i]];
      counts[0] = 0;
      std::array<uint16_t, 16> offsets{};
      for (int i = 1; i < 16; ++i) offsets[i] = offsets[i - 1] + counts[i - 1];
      symbols.resize(n);
      for (int i = 0; i < n; ++i)
        if (lengths[i] != 0) symbols[offsets[lengths[i]]++] = static_cast<uint16_t>(i);
    }
  };

  uint32_t bits(int count) {
    uint32_t value = 0;
    for (int i = 0; i < count; ++i) {
      if (bitCount_ == 0) {
        if (pos_ >= in_.size()) {
          overrun_ = true;
          return 0;
        }
        bitBuffer_ = in_[pos_++];
        bitCount_ = 8;
      }
      value |= uint32_t(bitBuffer_ & 1) << i;
      bitBuffer_ >>= 1;
      --bitCount_;
    }
    return value;
  }

  int decode(const Huffman& h) {
    int code = 0, first = 0, index = 0;
    for (int length = 1; length < 16; ++length) {
      code |= static_cast<int>(bits(1));
      const int count = h.counts[length];
      if (code - count < first) return h.symbols[index + (code - first)];
      index += count;
      first = (first + count) << 1;
      code <<= 1;
      if (overrun_) break;
    }
    overrun_ = true;
    return 0;
  }

  bool block(Bytes& out, const Huffman& literals, const Huffman& distances) {
    static constexpr uint16_t kLengthBase[] = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                               15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                               67, 83, 99, 115, 131, 163, 195, 227, 258};
    static constexpr uint8_t kLengthExtra[] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                               2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
    static constexpr uint16_t kDistBase[] = {
        1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
        193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
    static constexpr uint8_t kDistExtra[] = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                             6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
    for (;;) {
      const int symbol = decode(literals);
      if (overrun_) return false;
      if (symbol < 256) {
        out.push_back(static_cast<uint8_t>(symbol));
        continue;
      }
      if (symbol == 256) return true;
      if (symbol > 285) return false;
      const size_t length = kLengthBase[symbol - 257] + bits(kLengthExtra[symbol - 257]);
      const int d = decode(distances);
      if (d > 29) return false;
      const size_t distance = kDistBase[d] + bits(kDistExtra[d]);
      if (overrun_ || distance > out.size()) return false;
      for (size_t i = 0; i < length; ++i) out.push_back(out[out.size() - distance]);
    }
  }

  bool dynamicBlock(Bytes& out) {
    static constexpr uint8_t kOrder[19] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                           11, 4,  12, 3, 13, 2, 14, 1, 15};
    const int literalCount = static_cast<int>(bits(5)) + 257;
    const int distanceCount = static_cast<int>(bits(5)) + 1;
    const int codeCount = static_cast<int>(bits(4)) + 4;
    std::array<uint8_t, 19> codeLengths{};
    for (int i = 0; i < codeCount; ++i) codeLengths[kOrder[i]] = static_cast<uint8_t>(bits(3));
    const Huffman codes(codeLengths.data(), 19);
    std::array<uint8_t, 320> lengths{};
    for (int i = 0; i < literalCount + distanceCount;) {
      const int symbol = decode(codes);
      if (overrun_) return false;
      int repeat = 1;
      uint8_t value = static_cast<uint8_t>(symbol);
      if (symbol == 16) {
        if (i == 0) return false;
        value = lengths[i - 1];
        repeat = 3 + static_cast<int>(bits(2));
      } else if (symbol == 17) {
        value = 0;
        repeat = 3 + static_cast<int>(bits(3));
      } else if (symbol == 18) {
        value = 0;
        repeat = 11 + static_cast<int>(bits(7));
      }
      if (i + repeat > literalCount + distanceCount) return false;
      while (repeat-- > 0) lengths[i++] = value;
    }
    return block(out, Huffman(lengths.data(), literalCount),
                 Huffman(lengths.data() + literalCount, distanceCount));
  }

  const Bytes& in_;
  size_t pos_ = 0;
  uint8_t bitBuffer_ = 0;
  int bitCount_ = 0;
  bool overrun_ = false;
};

uint8_t paeth(int a, int b, int c) {
  const int p = a + b - c, pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
  return static_cast<uint8_t>(pa <= pb && pa <= pc ? a : pb <= pc ? b : c);
}

bool readPng(const Bytes& b, RecordedPicture& p) {
  static constexpr uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (b.size() < 33 || !std::equal(kSignature, kSignature + 8, b.begin())) return false;
  Bytes packed, palette, transparency;
  uint32_t width = 0, height = 0;
  int depth = 0, colourType = 0, interlace = 0;
  for (size_t at = 8; at + 12 <= b.size();) {
    const uint32_t length = readBe32(b, at);
    if (at + 12 + length > b.size()) return false;
    const std::string type(b.begin() + at + 4, b.begin() + at + 8);
    const auto data = b.begin() + at + 8;
    if (type == "IHDR" && length >= 13) {
      width = readBe32(b, at + 8);
      height = readBe32(b, at + 12);
      depth = data[8];
      colourType = data[9];
      interlace = data[12];
    } else if (type == "PLTE") {
      palette.assign(data, data + length);
    } else if (type == "tRNS") {
      transparency.assign(data, data + length);
    } else if (type == "IDAT") {
      packed.insert(packed.end(), data, data + length);
    } else if (type == "IEND") {
      break;
    }
    at += 12 + length;
  }
  static constexpr int kChannels[7] = {1, 0, 3, 1, 2, 0, 4};
  if (interlace != 0 || colourType > 6 || kChannels[colourType] == 0) return false;
  if (depth != 8 && !((colourType == 0 || colourType == 3) && depth < 8)) return false;
  if (!startPicture(p, width, height)) return false;
  Bytes raw;
  if (!Inflater(packed).run(raw)) return false;
  const int channels = kChannels[colourType];
  const size_t stride = (static_cast<size_t>(width) * channels * depth + 7) / 8;
  const size_t step = std::max<size_t>(1, static_cast<size_t>(channels) * depth / 8);
  if (raw.size() < (stride + 1) * height) return false;
  Bytes row(stride, 0), previous(stride, 0);
  for (uint32_t y = 0; y < height; ++y) {
    const uint8_t filter = raw[y * (stride + 1)];
    const uint8_t* line = &raw[y * (stride + 1) + 1];
    for (size_t i = 0; i < stride; ++i) {
      const int left = i >= step ? row[i - step] : 0, up = previous[i];
      const int corner = i >= step ? previous[i - step] : 0;
      const int predicted = filter == 1   ? left
                            : filter == 2 ? up
                            : filter == 3 ? (left + up) / 2
                            : filter == 4 ? paeth(left, up, corner)
                                          : 0;
      row[i] = static_cast<uint8_t>(line[i] + predicted);
    }
    for (uint32_t x = 0; x < width; ++x) {
      const uint8_t* px = &row[x * step];
      if (colourType == 2 || colourType == 6) {
        setPixel(p, x, y, px[0], px[1], px[2], colourType == 6 ? px[3] : 255);
      } else if (colourType == 4) {
        setPixel(p, x, y, px[0], px[0], px[0], px[1]);
      } else {
        const size_t bit = static_cast<size_t>(x) * depth;
        const int value = (row[bit / 8] >> (8 - depth - bit % 8)) & ((1 << depth) - 1);
        if (colourType == 0) {
          const auto grey = static_cast<uint8_t>(value * 255 / ((1 << depth) - 1));
          setPixel(p, x, y, grey, grey, grey, 255);
        } else {
          if (static_cast<size_t>(value) * 3 + 2 >= palette.size()) return false;
          const uint8_t alpha =
              static_cast<size_t>(value) < transparency.size() ? transparency[value] : 255;
          setPixel(p, x, y, palette[value * 3], palette[value * 3 + 1], palette[value * 3 + 2],
                   alpha);
        }
      }
    }
    std::swap(row, previous);
  }
  return true;
}

}  // namespace

bool readPictureFile(const std::filesystem::path& path, RecordedPicture& picture) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  const Bytes bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  RecordedPicture read;
  if (!readBmp(bytes, read) && !readPng(bytes, read)) return false;
  picture = std::move(read);
  return true;
}
