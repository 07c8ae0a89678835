// SPDX-License-Identifier: Apache-2.0
// HJIF, the JSON form of MPEG haptics (ISO/IEC 23090-31).
#pragma once

#include "design/base/motor.h"
#include "design/formats/drawing.h"
#include "design/pattern/json.h"

namespace design {

bool is_hjif(const JsonValue& root);
// Taps that are given in hertz get the level of the motor's nearest place.
void read_hjif(const JsonValue& root, const Tuning& tuning, Drawing& drawing);

}  // namespace design
