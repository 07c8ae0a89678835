// SPDX-License-Identifier: Apache-2.0
// Which stored burst plays at which level.
#pragma once

#include <cstdint>
#include <span>

namespace lrasynth {

// A stored burst, as sample codes; empty where there is none.
using Burst = std::span<const uint8_t>;

struct BurstBand {
  int32_t from;
  Burst burst;
};

// The bands of a motor, for row_at; none where it has no stored bursts.
std::span<const BurstBand> bursts_of(int32_t motor_code);

}  // namespace lrasynth
