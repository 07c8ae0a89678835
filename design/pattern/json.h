// SPDX-License-Identifier: Apache-2.0
// JSON as a tree in which every value knows its place in the text and how it was written there. Comments (// and /* */)
// are passed over.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/base/fault.h"

namespace design {

struct JsonValue {
  enum class Kind { kNull, kBoolean, kNumber, kString, kList, kObject };

  Kind kind = Kind::kNull;
  Place place = {};
  std::string_view written;      // what stands in the text; of lists and objects their first character
  std::string string = {};       // of strings
  std::vector<JsonValue> items;  // of lists, and the members of objects
  std::vector<std::string> names;
  std::vector<Place> name_places;

  // The first member of that name, null where there is none.
  const JsonValue* member(std::string_view name) const;
};

// What stands at a place where something else should, for one line of a message.
std::string named(const JsonValue& value);

// As it stands in a JSON text.
std::string quoted(std::string_view raw);

// The tree of a text, or why it is none. `written` refers to the text.
struct JsonText {
  std::optional<JsonValue> root;
  Fault fault = {};
};

JsonText read_json(std::string_view text);

}  // namespace design
