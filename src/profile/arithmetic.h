// SPDX-License-Identifier: Apache-2.0
// Integer arithmetic and float-to-integer conversion with a defined result for every argument.
#pragma once

#include <cfloat>
#include <concepts>
#include <cstdint>
#include <limits>

namespace lrasynth {

// Every byte depends on plain single and double precision: no wider intermediates, no other formats.
static_assert(FLT_EVAL_METHOD == 0, "floats must be computed as floats: on x86, compile with -msse2 -mfpmath=sse");
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

// Modulo 2^32, in two's complement: where the interface calls a result 32-bit, it is computed in 64 and wrapped.
constexpr int32_t wrap(int64_t value) { return static_cast<int32_t>(value); }

// The library's one conversion from floating point: toward zero, saturating, NaN to 0.
template <std::floating_point Float>
constexpr int32_t truncate(Float value) {
  constexpr Float kLimit = 2147483648.0;
  if (value >= kLimit) return std::numeric_limits<int32_t>::max();
  if (value >= -kLimit) return static_cast<int32_t>(value);
  return value < 0 ? std::numeric_limits<int32_t>::min() : 0;
}

// "Times ten, over ten, truncate": both operations in single precision and neither left out. They keep no decimal
// place, they can only move a value by one unit in its last place before it is truncated. Below kNarrowLimit in
// magnitude none is moved across a whole number, so that truncation alone gives the same.
constexpr float kNarrowLimit = 2097152.0F;

constexpr int32_t narrow(float value) {
  const float tenfold = value * 10.0F;
  return truncate(tenfold / 10.0F);
}

// A null buffer is refused where at least one element would be read or written.
constexpr bool refuses(const void* buffer, int64_t elements) { return buffer == nullptr && elements > 0; }

}  // namespace lrasynth
