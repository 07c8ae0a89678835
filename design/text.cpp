// SPDX-License-Identifier: Apache-2.0
// Text as strings.
#include "design/text.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace design {
namespace {

// Bytes of the character in UTF-8 that begins here (RFC 3629), 0 where none does. Surrogates and overlong forms are
// told from the second byte.
size_t length_of_character(std::string_view raw) {
  const auto byte = [&](size_t i) { return i < raw.size() ? static_cast<uint8_t>(raw[i]) : 0; };
  const auto follows = [&](size_t i) { return (byte(i) & 0xC0) == 0x80; };
  const int first = byte(0);
  const int second = byte(1);
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return follows(1) ? 2 : 0;
  if ((first & 0xF0) == 0xE0) {
    const bool valid = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second < 0xA0);
    return valid && follows(1) && follows(2) ? 3 : 0;
  }
  if (first < 0xF0 || first > 0xF4) return 0;
  const bool valid = (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second < 0x90);
  return valid && follows(1) && follows(2) && follows(3) ? 4 : 0;
}

// C0, C1, DEL, and the two characters that no XML may hold.
bool is_control(std::string_view character) {
  if (character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") return true;
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(character[i]); };
  return byte(0) < 0x20 || byte(0) == 0x7F || (byte(0) == 0xC2 && byte(1) < 0xA0);
}

}  // namespace

// The oldest compiler that we build with has no std::format yet.
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

std::string shown(std::string_view raw, size_t most_characters) {
  std::string line;
  size_t characters = 0;
  for (size_t at = 0; at < raw.size(); ++characters) {
    if (characters == most_characters) return line + "...";
    const size_t length = length_of_character(raw.substr(at));
    const std::string_view character = raw.substr(at, std::max<size_t>(1, length));
    if (length > 0 && !is_control(character)) {
      line += character;
    } else {
      for (const char byte : character) line += text("\\x%02X", static_cast<uint8_t>(byte));
    }
    at += character.size();
  }
  return line;
}

std::string counted(int64_t count, const char* what) {
  return text("%lld %s%s", static_cast<long long>(count), what, count == 1 ? "" : "s");
}

std::string echo(std::string_view word) { return word.empty() ? "an empty word" : shown(word); }

std::string alternatives(const std::vector<std::string>& words) {
  std::string list;
  for (size_t i = 0; i < words.size(); ++i) list += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
  return list;
}

std::string range_fault(int32_t least, int32_t most, const std::string& written) {
  return text("must be a whole number from %d to %d, not ", least, most) + written;
}

std::optional<int32_t> whole_number(std::string_view word) {
  int32_t number = 0;
  const char* const end = word.data() + word.size();
  const auto [last, error] = std::from_chars(word.data(), end, number);
  if (word.empty() || last != end || error != std::errc()) return std::nullopt;
  return number;
}

}  // namespace design
