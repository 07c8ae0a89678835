// SPDX-License-Identifier: Apache-2.0
// Members of objects, and what is wrong with them.
#include "design/formats/members.h"

#include <cmath>
#include <cstdlib>

#include "design/base/text.h"

namespace design {

using Kind = JsonValue::Kind;

namespace {

constexpr double kLargest = 1e12;  // so that sums and products of numbers are numbers

}  // namespace

bool MemberReader::is_object(const JsonValue& value, const char* what) {
  if (value.kind == Kind::kObject) return true;
  drawing_.fault(value.place, what + std::string(" must be an object, not ") + named(value));
  return false;
}

const JsonValue* MemberReader::of_kind(const JsonValue& of, const char* name, Kind kind, const char* what) {
  const JsonValue* const value = of.member(name);
  if (value == nullptr || value->kind == kind) return value;
  drawing_.fault(value->place, text("%s: must be %s, not ", name, what) + named(*value));
  return nullptr;
}

const JsonValue* MemberReader::object(const JsonValue& of, const char* name) {
  return of_kind(of, name, Kind::kObject, "an object");
}

const JsonValue* MemberReader::list(const JsonValue& of, const char* name) {
  return of_kind(of, name, Kind::kList, "a list");
}

std::string MemberReader::word(const JsonValue& of, const char* name) {
  const JsonValue* const value = of_kind(of, name, Kind::kString, "a text");
  return value == nullptr ? "" : value->string;
}

std::optional<double> MemberReader::number(const JsonValue& of, const char* name) {
  const JsonValue* const value = of_kind(of, name, Kind::kNumber, "a number");
  if (value == nullptr) return std::nullopt;
  const double number = std::strtod(std::string(value->written).c_str(), nullptr);
  if (std::fabs(number) <= kLargest) return number;
  drawing_.fault(value->place, text("%s: is too large: ", name) + named(*value));
  return std::nullopt;
}

template <class Value>
Value MemberReader::present(Value value, const JsonValue& of, const char* name) {
  if (of.member(name) == nullptr) drawing_.fault(of.place, text("%s: is missing", name));
  return value;
}

const JsonValue* MemberReader::required_object(const JsonValue& of, const char* name) {
  return present(object(of, name), of, name);
}

const JsonValue* MemberReader::required_list(const JsonValue& of, const char* name) {
  return present(list(of, name), of, name);
}

std::optional<double> MemberReader::required_number(const JsonValue& of, const char* name) {
  return present(number(of, name), of, name);
}

std::optional<double> MemberReader::in_range(std::optional<double> value, double least, double most,
                                             const JsonValue& of, const char* name) {
  if (!value || (*value >= least && *value <= most)) return value;
  const JsonValue& written = *of.member(name);
  const std::string range = most < HUGE_VAL ? text("from %g to %g", least, most) : text("from %g on", least);
  drawing_.fault(written.place, text("%s: must be a number ", name) + range + ", not " + named(written));
  return std::nullopt;
}

}  // namespace design
