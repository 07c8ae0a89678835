// SPDX-License-Identifier: Apache-2.0
// JSON as a tree with places, from the events of a parser that throws nothing.
#include "design/json.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "design/text.h"

namespace design {
namespace {

using Kind = JsonValue::Kind;
using Library = nlohmann::json;

// Walks over a text for the parser and leaves word how far it has come.
class Cursor {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Cursor(const char* at, const char** reached) : at_(at), reached_(reached) {}
  const char& operator*() const { return *at_; }
  Cursor& operator++() {
    *reached_ = ++at_;
    return *this;
  }
  bool operator==(const Cursor& other) const { return at_ == other.at_; }
  bool operator!=(const Cursor& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** reached_;
};

bool is_in_number(char c) { return std::string_view("+-.0123456789eE").find(c) != std::string_view::npos; }

// Takes the parser's events, each of which comes when its token has been read, a number with the character behind it.
class TreeBuilder {
 public:
  explicit TreeBuilder(std::string_view text) : text_(text), reached_(text.data()), placed_(text.data()) {}

  // The parser takes a NUL for the text's end.
  JsonText build() {
    if (const size_t nul = text_.find('\0'); nul != text_.npos) {
      return {std::nullopt, {0, place_of(text_.substr(nul)), "is not JSON: a NUL character"}};
    }
    const Cursor first(text_.data(), &reached_);
    const Cursor last(text_.data() + text_.size(), &reached_);
    if (Library::sax_parse(first, last, this)) return {std::move(root_), {}};
    return {std::nullopt, std::move(fault_)};
  }

  bool null() { return put(Kind::kNull, word()); }
  bool boolean(bool) { return put(Kind::kBoolean, word()); }
  bool number_integer(Library::number_integer_t value) {
    return put(Kind::kInteger, number(), static_cast<double>(value));
  }
  bool number_unsigned(Library::number_unsigned_t value) {
    return put(Kind::kInteger, number(), static_cast<double>(value));
  }
  bool number_float(Library::number_float_t value, const Library::string_t&) {
    return put(Kind::kFraction, number(), value);
  }
  bool string(Library::string_t& value) { return put(Kind::kString, quoted(), 0, std::move(value)); }
  bool binary(Library::binary_t&) { return false; }  // not in JSON
  bool key(Library::string_t& name) {
    open_.back()->name_places.push_back(place_of(quoted()));
    open_.back()->names.push_back(std::move(name));
    return true;
  }
  bool start_object(size_t) { return put(Kind::kObject, bracket()) && open(); }
  bool end_object() { return close(); }
  bool start_array(size_t) { return put(Kind::kList, bracket()) && open(); }
  bool end_array() { return close(); }

  // What the parser says: "[...] parse error at line 1, column 5: cause; last read: 'token'; expected ...".
  bool parse_error(size_t, const std::string& token, const nlohmann::detail::exception& error) {
    constexpr int kOutOfRange = 406;
    if (error.id == kOutOfRange) {
      fault_ = {0, place_of(number()), "must be a number that can be held, not " + shown(token)};
      return false;
    }
    const std::string_view said = error.what();
    const size_t column = said.find("column ");
    const size_t cause = column == said.npos ? 0 : said.find(": ", column) + 2;
    const size_t end = said.find("; last read: ", cause);
    const std::string_view why = said.substr(cause, end == said.npos ? end : end - cause);
    fault_.place = place_of({std::max(text_.data(), reached_ - (reached_ == text_.end() ? 0 : 1)), 0});
    fault_.what = "is not JSON: " + shown(why, 120);
    if (end != said.npos) fault_.what += ", after " + shown(token.substr(token.size() > 40 ? token.size() - 40 : 0));
    return false;
  }

 private:
  static constexpr size_t kDeepest = 16;

  std::string_view back_from(const char* end, bool (*inside)(char)) const {
    const char* begin = end;
    while (begin != text_.data() && inside(begin[-1])) --begin;
    return {begin, static_cast<size_t>(end - begin)};
  }

  std::string_view word() const {
    return back_from(reached_, [](char c) { return c >= 'a' && c <= 'z'; });
  }
  std::string_view number() const {
    return back_from(is_in_number(reached_[-1]) ? reached_ : reached_ - 1, is_in_number);
  }
  std::string_view bracket() const { return {reached_ - 1, 1}; }

  // Back to the quote before which no odd number of backslashes stands.
  std::string_view quoted() const {
    const char* begin = reached_ - 1;
    const auto escaped = [&] { return back_from(begin, [](char c) { return c == '\\'; }).size() % 2 == 1; };
    do --begin;
    while (*begin != '"' || escaped());
    return {begin, static_cast<size_t>(reached_ - begin)};
  }

  // Tokens come in the order of the text, so that lines are counted once.
  Place place_of(std::string_view written) {
    for (; placed_ < written.data(); ++placed_) {
      const bool continues = (static_cast<uint8_t>(*placed_) & 0xC0) == 0x80;
      if (*placed_ == '\n') {
        place_ = {place_.line + 1, 1};
      } else if (!continues) {
        ++place_.column;
      }
    }
    return place_;
  }

  bool put(Kind kind, std::string_view written, double value = 0, std::string string = {}) {
    JsonValue& slot = open_.empty() ? root_.emplace() : open_.back()->items.emplace_back();
    slot.kind = kind;
    slot.place = place_of(written);
    slot.written = written;
    slot.number = value;
    slot.string = std::move(string);
    newest_ = &slot;
    return true;
  }

  bool open() {
    open_.push_back(newest_);
    if (open_.size() <= kDeepest) return true;
    fault_ = {0, newest_->place, "is nested too deeply"};
    return false;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  std::string_view text_;
  const char* reached_;
  const char* placed_;
  Place place_ = {1, 1};
  std::optional<JsonValue> root_;
  JsonValue* newest_ = nullptr;
  std::vector<JsonValue*> open_;  // only the innermost list grows, so that these stay where they are
  Fault fault_;
};

}  // namespace

const JsonValue* JsonValue::member(std::string_view name) const {
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? nullptr : &items[static_cast<size_t>(found - names.begin())];
}

JsonText read_json(std::string_view text) { return TreeBuilder(text).build(); }

}  // namespace design
