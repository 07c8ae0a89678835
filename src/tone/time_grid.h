// SPDX-License-Identifier: Apache-2.0
// The time grid of a sine burst: n samples that span its cycles exactly.
#pragma once

#include <cstdint>

#include "profile/profile.h"

namespace lrasynth {

// Samples of that many cycles: the product first, then the quotient, truncated; negative where one of them is. 0 for a
// frequency of 0.
int32_t sine_count(Rate rate, int32_t frequency_hz, float cycles);

// Since the count is truncated, the step is not the sample period but the burst's duration over the count.
struct TimeGrid {
  TimeGrid() = default;
  TimeGrid(Rate rate, int32_t frequency_hz, float cycles);

  float time(int32_t i) const { return step * static_cast<float>(i); }

  int32_t count = 0;
  float step = 0.0F;  // seconds
};

}  // namespace lrasynth
