#include "station/text_format.h"

#include <cstdarg>
#include <cstdio>

std::string formatText(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list measuring;
  va_copy(measuring, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, measuring);
  va_end(measuring);
  std::string text;
  if (length > 0) {
    text.resize(static_cast<size_t>(length) + 1);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.resize(static_cast<size_t>(length));
  }
  va_end(arguments);
  return text;
}
