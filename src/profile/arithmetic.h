// SPDX-License-Identifier: Apache-2.0
// Integer arithmetic and float-to-integer conversion with a defined result for every argument.
#pragma once

#include <cfloat>
#include <concepts>
#include <cstdint>
#include <limits>

namespace lrasynth {

// Every byte depends on plain single and double precision: no wider intermediates, no other formats.
static_assert(FLT_EVAL_METHOD == 0);
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

// Two's-complement arithmetic modulo 2^32, where the interface calls a result 32-bit.
constexpr int32_t wrapping_add(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

constexpr int32_t wrapping_subtract(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

constexpr int32_t wrapping_multiply(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

// The library's one conversion from floating point: toward zero, saturating, NaN to 0.
template <std::floating_point Float>
constexpr int32_t truncate(Float value) {
  constexpr Float kLimit = 2147483648.0;
  if (value >= kLimit) return std::numeric_limits<int32_t>::max();
  if (value >= -kLimit) return static_cast<int32_t>(value);
  return value < 0 ? std::numeric_limits<int32_t>::min() : 0;
}

// A null buffer is refused where at least one element would be read or written.
constexpr bool refuses(const void* buffer, int64_t elements) { return buffer == nullptr && elements > 0; }

}  // namespace lrasynth
