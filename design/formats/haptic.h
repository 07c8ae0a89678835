// SPDX-License-Identifier: Apache-2.0
// .haptic 1.0, the haptic data model of envelopes and emphases.
#pragma once

#include <string>

#include "design/formats/drawing.h"
#include "design/pattern/json.h"

namespace design {

bool is_haptic(const JsonValue& root);
void read_haptic(const JsonValue& root, Drawing& drawing);
std::string write_haptic(const Drawing& drawing, Losses& losses);

}  // namespace design
