// SPDX-License-Identifier: Apache-2.0
// Text as strings.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace design {

// What printf would print.
[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...);

// "1 sample", "2 samples"
std::string counted(int64_t count, const char* what);

// Foreign bytes for one line of a message or a picture: control characters and what is no UTF-8 as \xHH, and what is
// longer than that many characters cut, with "..." behind.
std::string shown(std::string_view raw, size_t most_characters = 40);

// The same of an argument, which may have no character at all.
std::string echo(std::string_view word);

// "a, b or c"
std::string alternatives(const std::vector<std::string>& words);

// Why a number is refused that was written like that.
std::string range_fault(int32_t least, int32_t most, const std::string& written);

// A whole number as people write it, in decimal digits; nothing where it is none, or too large.
std::optional<int32_t> whole_number(std::string_view word);

}  // namespace design
