// SPDX-License-Identifier: Apache-2.0
// Formatted text as a string.
#pragma once

#include <string>

namespace command {

// What printf would print.
[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...);

}  // namespace command
