// SPDX-License-Identifier: Apache-2.0
// The narrowing that the curves share with coding and replay.
#pragma once

#include <cstdint>

#include "profile/arithmetic.h"

namespace lrasynth {

// "Times ten, over ten, truncate": both operations in single precision and neither left out. They keep no decimal
// place, they can only move a value by one unit in its last place before it is truncated. Below kNarrowLimit in
// magnitude none is moved across a whole number, so that truncation alone gives the same.
constexpr float kNarrowLimit = 2097152.0F;

constexpr int32_t narrow(float value) {
  const float tenfold = value * 10.0F;
  return truncate(tenfold / 10.0F);
}

}  // namespace lrasynth
