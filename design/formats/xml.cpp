// SPDX-License-Identifier: Apache-2.0
// XML as a tree with places.
#include "design/formats/xml.h"

#include <algorithm>
#include <string>
#include <utility>

#include "design/base/text.h"

namespace design {
namespace {

constexpr size_t kDeepest = 32;
constexpr size_t kMostAttributes = 64;     // of an element
constexpr size_t kMostElements = 250'000;  // more than any pattern can have events and points

constexpr std::string_view kSpace = " \t\r\n";

constexpr bool is_space(char c) { return kSpace.find(c) != std::string_view::npos; }

constexpr bool begins_name(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return (lower >= 'a' && lower <= 'z') || c == '_' || c == ':' || static_cast<uint8_t>(c) >= 0x80;
}

constexpr bool is_in_name(char c) { return begins_name(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

// What is XML, but not read, at its first characters.
struct Unread {
  std::string_view begin;
  const char* words;
};

constexpr Unread kUnread[] = {
    {"<!DOCTYPE", "has a document type, which is not read"},
    {"<![CDATA[", "has a CDATA section, which is not read"},
    {"&", "has an entity, which is not read"},
};

// What is passed over.
struct Remark {
  std::string_view begin;
  std::string_view end;
  const char* name;
};

constexpr Remark kRemarks[] = {{"<!--", "-->", "a comment"}, {"<?", "?>", "a processing instruction"}};

// Whatever reads a part of the text says whether it could.
class TreeReader {
 public:
  explicit TreeReader(std::string_view text) : text_(text), places_(text) {}

  XmlText read() {
    if (!read_all()) root_.reset();
    return {std::move(root_), std::move(fault_)};
  }

 private:
  bool fault(Place place, std::string what) {
    fault_ = {{}, place, std::move(what)};
    return false;
  }
  bool refuse(size_t at, const std::string& why) { return fault(places_.at(at), "is not XML: " + why); }

  bool is_at_end() const { return at_ == text_.size(); }
  bool is_at(std::string_view word) const { return text_.substr(at_).starts_with(word); }
  bool take(std::string_view word) {
    const bool is_here = is_at(word);
    if (is_here) at_ += word.size();
    return is_here;
  }
  std::string_view take_while(bool (*inside)(char)) {
    const size_t begin = at_;
    while (!is_at_end() && inside(text_[at_])) ++at_;
    return text_.substr(begin, at_ - begin);
  }
  // Empty where none begins.
  std::string_view take_name() {
    return is_at_end() || !begins_name(text_[at_]) ? std::string_view() : take_while(is_in_name);
  }

  bool read_all() {
    if (!check_characters()) return false;
    take(kByteOrderMark);
    while (pass_remarks() && !is_at_end()) {
      if (!read_tag()) return false;
    }
    if (!fault_.what.empty()) return false;
    if (!open_.empty()) return fault(open_.back()->place, "is not XML: " + tag_of(*open_.back()) + " has no end");
    return root_ ? true : refuse(at_, "it has no element");
  }

  bool check_characters() {
    for (size_t at = 0; at < text_.size();) {
      if (text_[at] == '\0') return refuse(at, "it holds a NUL character");
      const size_t length = length_of_character(text_.substr(at));
      if (length == 0) return refuse(at, "it is not UTF-8");
      at += length;
    }
    return true;
  }

  bool pass_remarks() {
    for (;;) {
      take_while(is_space);
      const auto begins = [this](const Remark& remark) { return is_at(remark.begin); };
      const Remark* const remark = std::find_if(std::begin(kRemarks), std::end(kRemarks), begins);
      if (remark == std::end(kRemarks)) return true;
      const size_t end = text_.find(remark->end, at_ + remark->begin.size());
      if (end == std::string_view::npos) return refuse(at_, std::string(remark->name) + " has no end");
      at_ = end + remark->end.size();
    }
  }

  bool refuse_unread() {
    for (const Unread& unread : kUnread) {
      if (is_at(unread.begin)) return fault(places_.at(at_), unread.words);
    }
    return true;
  }

  bool read_tag() {
    if (!refuse_unread()) return false;
    if (open_.empty() && root_) return refuse(at_, "something follows behind its end");
    if (text_[at_] != '<') return refuse(at_, "text stands where elements are expected");
    const size_t begin = at_;
    return is_at("</") ? close(begin) : open(begin);
  }

  static std::string tag_of(const XmlElement& element) { return "<" + shown(element.name) + ">"; }

  bool close(size_t begin) {
    take("</");
    const std::string_view name = take_name();
    take_while(is_space);
    if (!take(">")) return refuse(at_, "> is missing behind a closing name");
    if (open_.empty()) return refuse(begin, "</" + shown(name) + "> closes nothing");
    if (open_.back()->name != name) {
      return refuse(begin, "</" + shown(name) + "> does not close " + tag_of(*open_.back()));
    }
    open_.pop_back();
    return true;
  }

  bool open(size_t begin) {
    const Place place = places_.at(begin);
    if (open_.size() == kDeepest) return fault(place, "is nested too deeply");
    if (++elements_ > kMostElements) return fault(place, text("has more than %zu elements", kMostElements));
    take("<");
    XmlElement& element = open_.empty() ? root_.emplace() : open_.back()->children.emplace_back();
    element.name = take_name();
    element.place = place;
    if (element.name.empty()) return refuse(at_, "a name is expected behind <");
    if (!read_attributes(element)) return false;
    if (take("/>")) return true;
    if (!take(">")) return refuse(at_, "an attribute or > is expected in " + tag_of(element));
    open_.push_back(&element);
    return true;
  }

  bool read_attributes(XmlElement& element) {
    for (;;) {
      const bool is_apart = !take_while(is_space).empty();
      const size_t begin = at_;
      const std::string_view name = take_name();
      if (name.empty()) return true;
      if (!is_apart) return refuse(begin, "a space is missing before " + shown(name));
      if (element.attribute(name) != nullptr) return refuse(begin, shown(name) + " stands there twice");
      if (element.attributes.size() == kMostAttributes) {
        return fault(places_.at(begin), text("has more than %zu attributes", kMostAttributes));
      }
      if (!read_value(element.attributes.emplace_back(XmlAttribute{name, {}}))) return false;
    }
  }

  bool read_value(XmlAttribute& attribute) {
    take_while(is_space);
    if (!take("=")) return refuse(at_, "= is missing behind " + shown(attribute.name));
    take_while(is_space);
    attribute.place = places_.at(at_);
    const size_t begin = at_ + 1;
    if (!is_at("\"") && !is_at("'"))
      return refuse(at_, "quotes are missing around the value of " + shown(attribute.name));
    const size_t end = text_.find(text_[at_], begin);
    if (end == std::string_view::npos) return refuse(at_, "the value of " + shown(attribute.name) + " has no end");
    attribute.value = text_.substr(begin, end - begin);
    const size_t odd = attribute.value.find_first_of("<&");
    at_ = odd == std::string_view::npos ? end + 1 : begin + odd;
    if (odd == std::string_view::npos) return true;
    return refuse_unread() && refuse(at_, "< stands in the value of " + shown(attribute.name));
  }

  std::string_view text_;
  size_t at_ = 0;
  Places places_;
  std::optional<XmlElement> root_;
  std::vector<XmlElement*> open_;  // only the innermost one gets children, so that these stay where they are
  size_t elements_ = 0;
  Fault fault_;
};

}  // namespace

const XmlAttribute* XmlElement::attribute(std::string_view wanted) const {
  const auto is_wanted = [&](const XmlAttribute& attribute) { return attribute.name == wanted; };
  const auto found = std::find_if(attributes.begin(), attributes.end(), is_wanted);
  return found == attributes.end() ? nullptr : &*found;
}

XmlText read_xml(std::string_view text) { return TreeReader(text).read(); }

}  // namespace design
