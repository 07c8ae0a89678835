// Formatted text as a string: std::format is not there yet with the oldest compiler that we build with.
#include "text.h"

#include <cstdarg>
#include <cstdio>

namespace lrasynth {

std::string text(const char* format, ...) {
  va_list values;
  va_start(values, format);
  va_list again;
  va_copy(again, values);
  std::string result(static_cast<size_t>(std::vsnprintf(nullptr, 0, format, values)), '\0');
  std::vsnprintf(result.data(), result.size() + 1, format, again);
  va_end(again);
  va_end(values);
  return result;
}

}  // namespace lrasynth
