// SPDX-License-Identifier: Apache-2.0
// Milliseconds of on and off in turns, as browsers' vibrate() takes them.
#pragma once

#include <string>

#include "design/formats/drawing.h"

namespace design {

// A JSON array on a line.
std::string write_on_off(const Drawing& drawing, Losses& losses);

}  // namespace design
