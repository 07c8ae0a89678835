// SPDX-License-Identifier: Apache-2.0
// JSON as a tree with places, from the events of a parser that knows how far it has read.
#include "design/pattern/json.h"

#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

#include <algorithm>

#include "design/base/text.h"

namespace design {
namespace {

using Kind = JsonValue::Kind;

struct Cause {
  rapidjson::ParseErrorCode code;
  const char* words;
  bool is_missing = false;  // what should stand behind the last token
};

constexpr Cause kCauses[] = {
    {rapidjson::kParseErrorDocumentEmpty, "the text is empty"},
    {rapidjson::kParseErrorDocumentRootNotSingular, "something follows behind its end"},
    {rapidjson::kParseErrorValueInvalid, "a value is expected here"},
    {rapidjson::kParseErrorObjectMissName, "a name in double quotes is expected here"},
    {rapidjson::kParseErrorObjectMissColon, "a colon is missing behind the name", true},
    {rapidjson::kParseErrorObjectMissCommaOrCurlyBracket, "a comma or } is missing", true},
    {rapidjson::kParseErrorArrayMissCommaOrSquareBracket, "a comma or ] is missing", true},
    {rapidjson::kParseErrorStringUnicodeEscapeInvalidHex, "a string has an invalid escape"},
    {rapidjson::kParseErrorStringUnicodeSurrogateInvalid, "a string has half a surrogate pair"},
    {rapidjson::kParseErrorStringEscapeInvalid, "a string has an invalid escape"},
    {rapidjson::kParseErrorStringMissQuotationMark, "a string has no end"},
    {rapidjson::kParseErrorStringInvalidEncoding, "a string is not UTF-8"},
    {rapidjson::kParseErrorNumberMissFraction, "a number has no digit behind its point"},
    {rapidjson::kParseErrorNumberMissExponent, "a number has no digit in its exponent"},
    {rapidjson::kParseErrorUnspecificSyntaxError, "a comment has no end"},
};

// The parser works on the library's own streams by copies, which would not tell how far they are.
struct Stream : rapidjson::InsituStringStream {
  explicit Stream(char* text) : GenericInsituStringStream(text) {}
};

// Takes the parser's events, each of which comes when its token has been read.
class TreeBuilder {
 public:
  explicit TreeBuilder(std::string_view text) : text_(text), copy_(text), stream_(nullptr), places_(text) {
    // The parser ends at a NUL, but reads a character of several bytes to its end before it looks.
    constexpr size_t kLongestCharacter = 4;
    copy_.append(kLongestCharacter, '\0');
    stream_ = Stream(copy_.data());
  }

  // The parser takes a NUL for the text's end.
  JsonText build() {
    if (const size_t nul = text_.find('\0'); nul != text_.npos) return refused(nul, "it holds a NUL character");
    constexpr unsigned kFlags = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag |
                                rapidjson::kParseValidateEncodingFlag | rapidjson::kParseCommentsFlag;
    while (text_.starts_with(kByteOrderMark) && stream_.Tell() < kByteOrderMark.size()) stream_.Take();
    rapidjson::Reader reader;
    const rapidjson::ParseResult result = reader.Parse<kFlags>(stream_, *this);
    if (!result.IsError()) return {std::move(root_), {}};
    if (result.Code() == rapidjson::kParseErrorTermination) return {std::nullopt, std::move(fault_)};
    const auto is_code = [&](const Cause& cause) { return cause.code == result.Code(); };
    const Cause* const cause = std::find_if(std::begin(kCauses), std::end(kCauses), is_code);
    if (cause == std::end(kCauses)) return refused(result.Offset(), "a number is too large");
    const bool is_control = result.Offset() < text_.size() && static_cast<uint8_t>(text_[result.Offset()]) < 0x20;
    if (cause->code == rapidjson::kParseErrorStringEscapeInvalid && is_control) {
      return refused(result.Offset(), "a string is not closed, or holds a control character");
    }
    return refused(cause->is_missing ? end_ : std::min(result.Offset(), text_.size()), cause->words);
  }

  bool Null() { return add(Kind::kNull, word()); }
  bool Bool(bool) { return add(Kind::kBoolean, word()); }
  bool RawNumber(const char*, rapidjson::SizeType length, bool) { return add(Kind::kNumber, last(length)); }
  bool String(const char* value, rapidjson::SizeType length, bool) {
    return add(Kind::kString, quoted(), {value, length});
  }
  bool Key(const char* name, rapidjson::SizeType length, bool) {
    open_.back()->name_places.push_back(place_of(quoted()));
    open_.back()->names.emplace_back(name, length);
    end_ = stream_.Tell();
    return true;
  }
  bool StartObject() { return add(Kind::kObject, last(1)) && open(); }
  bool EndObject(rapidjson::SizeType) { return close(); }
  bool StartArray() { return add(Kind::kList, last(1)) && open(); }
  bool EndArray(rapidjson::SizeType) { return close(); }
  // Numbers come as they are written instead.
  bool Int(int) { return false; }
  bool Uint(unsigned) { return false; }
  bool Int64(int64_t) { return false; }
  bool Uint64(uint64_t) { return false; }
  bool Double(double) { return false; }

 private:
  static constexpr size_t kDeepest = 32;

  // What has just been read, so many characters of it.
  std::string_view last(size_t length) { return text_.substr(stream_.Tell() - length, length); }

  std::string_view back_while(size_t end, bool (*inside)(char)) const {
    size_t begin = end;
    while (begin > 0 && inside(text_[begin - 1])) --begin;
    return text_.substr(begin, end - begin);
  }

  std::string_view word() {
    return back_while(stream_.Tell(), [](char c) { return c >= 'a' && c <= 'z'; });
  }

  // Back to the quote before which no odd number of backslashes stands.
  std::string_view quoted() {
    size_t begin = stream_.Tell() - 1;
    const auto escaped = [&] { return back_while(begin, [](char c) { return c == '\\'; }).size() % 2 == 1; };
    do --begin;
    while (text_[begin] != '"' || escaped());
    return text_.substr(begin, stream_.Tell() - begin);
  }

  Place place_of(std::string_view written) { return places_.at(static_cast<size_t>(written.data() - text_.data())); }

  JsonText refused(size_t at, const std::string& why) {
    return {std::nullopt, {{}, place_of(text_.substr(at)), "is not JSON: " + why}};
  }

  bool add(Kind kind, std::string_view written, std::string string = {}) {
    JsonValue& slot = open_.empty() ? root_.emplace() : open_.back()->items.emplace_back();
    slot.kind = kind;
    slot.place = place_of(written);
    slot.written = written;
    slot.string = std::move(string);
    newest_ = &slot;
    end_ = stream_.Tell();
    return true;
  }

  bool open() {
    open_.push_back(newest_);
    if (open_.size() <= kDeepest) return true;
    fault_ = {{}, newest_->place, "is nested too deeply"};
    return false;
  }

  bool close() {
    open_.pop_back();
    end_ = stream_.Tell();
    return true;
  }

  std::string_view text_;
  std::string copy_;  // in which the parser resolves escapes
  Stream stream_;
  size_t end_ = 0;  // of the last token
  Places places_;
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

std::string named(const JsonValue& value) {
  if (value.kind == Kind::kList) return "a list";
  if (value.kind == Kind::kObject) return "an object";
  return shown(value.written);
}

std::string quoted(std::string_view raw) {
  std::string word = "\"";
  for (const char c : raw) {
    if (c == '"' || c == '\\') word += '\\';
    if (static_cast<uint8_t>(c) < 0x20) {
      word += text("\\u%04x", c);
    } else {
      word += c;
    }
  }
  return word + '"';
}

JsonText read_json(std::string_view text) { return TreeBuilder(text).build(); }

}  // namespace design
