// SPDX-License-Identifier: Apache-2.0
// Times and their units.
#include "design/pattern/time.h"

#include <cstdlib>
#include <optional>

#include "design/base/text.h"
#include "design/pattern/event.h"

namespace design {
namespace {

struct Unit {
  const char* name;
  double ms;  // 0: it is a beat
};

constexpr Unit kUnits[] = {{"ms", 1}, {"s", 1000}, {"b", 0}};

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// What a decimal number at the start of the word is, which it leaves.
std::optional<double> number_at(std::string_view& word) {
  size_t length = 0;
  while (length < word.size() && (is_digit(word[length]) || word[length] == '.')) ++length;
  const std::string digits(word.substr(0, length));
  word.remove_prefix(length);
  const bool is_number =
      !digits.empty() && is_digit(digits.front()) && is_digit(digits.back()) && digits.find('.') == digits.rfind('.');
  return is_number ? std::optional(std::strtod(digits.c_str(), nullptr)) : std::nullopt;
}

// "1.5" or "1/3", which it leaves.
std::optional<double> amount_at(std::string_view& word) {
  const std::optional<double> amount = number_at(word);
  if (!amount || !word.starts_with('/')) return amount;
  word.remove_prefix(1);
  const std::optional<double> parts = number_at(word);
  return parts && *parts > 0 ? std::optional(*amount / *parts) : std::nullopt;
}

Time range_checked(double ms, int32_t least_ms, const std::string& written) {
  if (ms >= least_ms && ms <= kLongestMs) return {ms, ""};
  return {0, text("must be %d to %d ms, not ", least_ms, kLongestMs) + written};
}

}  // namespace

double tempo_of(const JsonValue& file) {
  const JsonValue* const tempo = file.member("tempo");
  return tempo == nullptr ? 0 : std::strtod(std::string(tempo->written).c_str(), nullptr);
}

Time time_of(const JsonValue& value, double tempo, int32_t least_ms) {
  if (value.kind != JsonValue::Kind::kString) {
    const auto whole = value.kind == JsonValue::Kind::kNumber ? whole_number(value.written) : std::nullopt;
    if (whole && *whole >= least_ms && *whole <= kLongestMs) return {static_cast<double>(*whole), ""};
    return {0, range_fault(least_ms, kLongestMs, named(value))};
  }
  std::string_view word = value.string;
  const std::optional<double> amount = amount_at(word);
  for (const Unit& unit : kUnits) {
    if (!amount || word != unit.name) continue;
    if (unit.ms == 0 && tempo == 0) return {0, "counts beats, which need a tempo of the file: " + named(value)};
    return range_checked(*amount * (unit.ms == 0 ? 60'000 / tempo : unit.ms), least_ms, named(value));
  }
  return {0, R"(must be milliseconds or a text like "250ms", "1.5s", "2b", "1/3b", not )" + named(value)};
}

}  // namespace design
