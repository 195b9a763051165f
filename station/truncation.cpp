#include "station/truncation.h"

#include <cmath>
#include <limits>

int truncatedToInt(double value) {
  if (std::isnan(value)) return 0;
  if (value >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  if (value <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}
