// SPDX-License-Identifier: Apache-2.0
// AHAP, the Apple Haptic and Audio Pattern.
#pragma once

#include <string>

#include "design/formats/drawing.h"
#include "design/pattern/json.h"

namespace design {

bool is_ahap(const JsonValue& root);
void read_ahap(const JsonValue& root, Drawing& drawing);
std::string write_ahap(const Drawing& drawing, Losses& losses);

}  // namespace design
