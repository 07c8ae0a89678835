// SPDX-License-Identifier: Apache-2.0
// Members of the JSON objects of other forms. What is wrong with them is noted; names that nobody asks for are passed
// over.
#pragma once

#include <optional>
#include <string>

#include "design/formats/drawing.h"
#include "design/pattern/json.h"

namespace design {

class MemberReader {
 public:
  explicit MemberReader(Drawing& drawing) : drawing_(drawing) {}

  bool is_object(const JsonValue& value, const char* what);

  // A member that is of another kind is a fault, and none.
  const JsonValue* object(const JsonValue& of, const char* name);
  const JsonValue* list(const JsonValue& of, const char* name);
  std::string word(const JsonValue& of, const char* name);
  std::optional<double> number(const JsonValue& of, const char* name);

  // The same, where to be absent is a fault as well.
  const JsonValue* required_object(const JsonValue& of, const char* name);
  const JsonValue* required_list(const JsonValue& of, const char* name);
  std::optional<double> required_number(const JsonValue& of, const char* name);

  // What lies outside is a fault.
  std::optional<double> in_range(std::optional<double> value, double least, double most, const JsonValue& of,
                                 const char* name);

 private:
  const JsonValue* of_kind(const JsonValue& of, const char* name, JsonValue::Kind kind, const char* what);
  template <class Value>
  Value present(Value value, const JsonValue& of, const char* name);

  Drawing& drawing_;
};

}  // namespace design
