// Fills a buffer by repeating a pattern (the fuzzer's few bytes over a whole frame or
// render), doubling the filled part at each step; a buffer without a pattern stays as it is.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

inline void tile(uint8_t* buffer, size_t size, const uint8_t* pattern, size_t count) {
  if (count == 0 || size == 0) return;
  size_t filled = std::min(count, size);
  std::copy_n(pattern, filled, buffer);
  while (filled < size) {
    const size_t more = std::min(filled, size - filled);
    std::copy_n(buffer, more, buffer + filled);
    filled += more;
  }
}
