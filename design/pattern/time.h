// SPDX-License-Identifier: Apache-2.0
// Times as people write them in pattern files.
#pragma once

#include <cstdint>
#include <string>

#include "design/pattern/json.h"

namespace design {

// In ms, of which a part may be: 250, "250ms", "1.5s", and with a tempo of beats a minute (0: none) "2b" and "1/3b". Or
// why it is none, as it goes on behind the field's name.
struct Time {
  double ms = 0;
  std::string fault = {};
};

// Of a file, 0 where it has none.
double tempo_of(const JsonValue& file);

Time time_of(const JsonValue& value, double tempo, int32_t least_ms = 0);

}  // namespace design
