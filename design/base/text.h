// SPDX-License-Identifier: Apache-2.0
// Text as strings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace design {

// What may stand before a text in UTF-8, and says nothing.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// What printf would print.
[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...);

// "1 sample", "2 samples"
std::string counted(int64_t count, const char* what);

// "1,200"
std::string grouped(int64_t count);

// A time as people read it, to the hundredth of a millisecond: "40", "21.04".
std::string ms_text(double ms);

// Bytes of the character in UTF-8 that begins here (RFC 3629), 0 where none does.
size_t length_of_character(std::string_view raw);

// Foreign bytes for one line of a message or a picture: control characters and what is no UTF-8 as \xHH, and what is
// longer than that many characters cut, with "..." behind.
std::string shown(std::string_view raw, size_t most_characters = 40);

// The same of a name, of which both ends are kept where it is longer.
std::string shown_name(std::string_view raw, size_t most_characters);

// The same of an argument, which may have no character at all.
std::string echo(std::string_view word);

// "a, b or c", with another word for "or".
std::string listed(const std::vector<std::string>& words, const char* last = "or");

// "; did you mean level?", where a known word is a slip or two away; else nothing.
std::string did_you_mean(std::string_view word, const std::vector<std::string>& known);

// Why a number is refused that was written like that.
std::string range_fault(int32_t least, int32_t most, const std::string& written);

// A whole number as people write it, in decimal digits; nothing where it is none, or too large.
std::optional<int32_t> whole_number(std::string_view word);

}  // namespace design
