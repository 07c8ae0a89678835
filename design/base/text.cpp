// SPDX-License-Identifier: Apache-2.0
// Text as strings.
#include "design/base/text.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace design {
namespace {

// C0, C1, DEL, and the two characters that no XML may hold.
bool is_control(std::string_view character) {
  if (character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") return true;
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(character[i]); };
  return byte(0) < 0x20 || byte(0) == 0x7F || (byte(0) == 0xC2 && byte(1) < 0xA0);
}

// The fewest letters to insert, to leave out, to replace or to swap with their neighbour (optimal string alignment).
size_t slips_between(std::string_view a, std::string_view b) {
  std::vector<std::vector<size_t>> rows(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i) {
    for (size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        rows[i][j] = i + j;
        continue;
      }
      const size_t replaced = rows[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      rows[i][j] = std::min({replaced, rows[i - 1][j] + 1, rows[i][j - 1] + 1});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
    }
  }
  return rows[a.size()][b.size()];
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

// Surrogates and overlong forms are told from the second byte.
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

std::string grouped(int64_t count) {
  std::string digits = std::to_string(count);
  for (size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

std::string ms_text(double ms) {
  std::string words = text("%.2f", ms);
  words.erase(words.find_last_not_of('0') + 1);
  if (words.back() == '.') words.pop_back();
  return words == "-0" ? "0" : words;
}

std::string shown_name(std::string_view raw, size_t most_characters) {
  const std::string whole = shown(raw, raw.size());
  std::vector<size_t> starts;  // of the characters
  for (size_t i = 0; i < whole.size(); ++i) {
    if ((static_cast<uint8_t>(whole[i]) & 0xC0) != 0x80) starts.push_back(i);
  }
  if (starts.size() <= most_characters) return whole;
  const size_t tail = (most_characters - 3) / 2;
  const size_t head = most_characters - 3 - tail;
  return whole.substr(0, starts[head]) + "..." + whole.substr(starts[starts.size() - tail]);
}

std::string echo(std::string_view word) { return word.empty() ? "an empty word" : shown(word); }

std::string listed(const std::vector<std::string>& words, const char* last) {
  std::string list;
  for (size_t i = 0; i < words.size(); ++i) {
    if (i > 0) list += i + 1 == words.size() ? text(" %s ", last) : ", ";
    list += words[i];
  }
  return list;
}

std::string did_you_mean(std::string_view word, const std::vector<std::string>& known) {
  constexpr size_t kLongest = 40;
  constexpr size_t kMostSlips = 2;
  if (word.size() > kLongest) return "";
  std::string nearest;
  size_t fewest = kMostSlips + 1;
  for (const std::string& candidate : known) {
    const size_t slips = slips_between(word, candidate);
    if (slips >= fewest || 2 * slips > candidate.size()) continue;
    fewest = slips;
    nearest = candidate;
  }
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
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
