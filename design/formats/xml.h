// SPDX-License-Identifier: Apache-2.0
// XML as a tree in which every element and every value knows its place in the text. Of XML that is what vibrations are
// written in: elements and attributes, between which comments and processing instructions are passed over.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "design/base/fault.h"

namespace design {

struct XmlAttribute {
  std::string_view name;
  std::string_view value;
  Place place = {};  // of the value
};

struct XmlElement {
  std::string_view name;
  Place place = {};
  std::vector<XmlAttribute> attributes = {};
  std::vector<XmlElement> children = {};

  // Null where there is none of that name.
  const XmlAttribute* attribute(std::string_view wanted) const;
};

// The tree of a text, or why it is none. Names and values refer to the text.
struct XmlText {
  std::optional<XmlElement> root;
  Fault fault = {};
};

// Whatever the text holds: it takes time as the text is long, and elements stand no deeper in each other than 32.
XmlText read_xml(std::string_view text);

}  // namespace design
