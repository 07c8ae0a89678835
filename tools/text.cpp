// SPDX-License-Identifier: Apache-2.0
// Formatted text as a string: the oldest compiler that we build with has no std::format yet.
#include "text.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace command {

std::string text(const char* format, ...) {
  char* printed = nullptr;
  va_list values;
  va_start(values, format);
  const int length = ::vasprintf(&printed, format, values);
  va_end(values);
  if (length < 0) return {};
  std::string result(printed, static_cast<size_t>(length));
  std::free(printed);
  return result;
}

}  // namespace command
