// SPDX-License-Identifier: Apache-2.0
// Sample codes: how an offset value (128 + amplitude) becomes an output byte.
#pragma once

#include <cstdint>

namespace lrasynth {

constexpr float kFullScale = 127.0F;  // largest amplitude
constexpr float kRest = 128.0F;       // as an offset value
constexpr uint8_t kRestCode = 255;    // as a sample code of the sine synthesisers
constexpr uint8_t kFirstCode = 0;     // what every sine waveform starts with instead

// The shift is 127 and not 128: rest codes as 255 and both extremes, 1 and 255, as 128.
constexpr float code_offset(float offset_value) {
  return offset_value > kRest ? offset_value - 127.0F : offset_value + 127.0F;
}

// For an offset value that is already truncated, so that everything below 129 counts as rest or less.
constexpr int32_t code_truncated_offset(int32_t offset_value) {
  return offset_value <= 128 ? offset_value + 127 : offset_value - 127;
}

constexpr float mirror(float offset_value) { return 256.0F - offset_value; }

constexpr uint8_t low_byte(int32_t coded) { return static_cast<uint8_t>(static_cast<uint32_t>(coded)); }

}  // namespace lrasynth
