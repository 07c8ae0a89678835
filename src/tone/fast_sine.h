// SPDX-License-Identifier: Apache-2.0
// A single-precision sine that compilers vectorise: straight-line code, no table, no branch, no integer division.
#pragma once

#include <bit>
#include <cstdint>

namespace lrasynth {

// Adding and taking away 1.5 * 2^23 rounds a float below 2^22 in magnitude to a whole number, whose low bits then stand
// in the sum's mantissa.
constexpr float kRoundingShift = 12582912.0F;

// Beyond this phase the quotient no longer fits the 16 bits for which the reduction below is exact.
constexpr float kFastSineLimit = 200000.0F;

// For |x| <= kFastSineLimit, |fast_sine(x) - sin(x)| <= kFastSineError + |x| kReductionError. By steps, with u = 2^-24:
//   reduction    x - k pi in two parts (W. J. Cody, W. Waite: Software Manual for the Elementary Functions, 1980). The
//                first has 8 bits, so that its product with k < 2^16 is exact, and so is the first difference. The
//                second is 9.7e-4: its product, |x| 3.1e-4, errs by u of itself, its constant by a tenth of that. The
//                second difference errs by u where |r| > 1 and the sine's slope is at most 0.55, by u / 2 elsewhere.
//   polynomial   7.0e-7 on |r| <= 1.6, which r does not leave when the quotient rounds to the next k; the rounding of
//                the coefficients adds less than 6e-8.
//   evaluation   the factor of r, at most 1, errs by less than 1.6 u, and the product by u / 2.
// Together below 9.8e-7 + |x| 2.1e-11. The largest over all floats up to 8192 is 8.9e-7, over all of the range 4e-6.
constexpr float kFastSineError = 1e-6F;
constexpr float kReductionError = 2.2e-11F;

// The polynomial alone, for a phase within +-kReducedSineLimit: the same bound of the error, without the reduction.
constexpr float kReducedSineLimit = 1.6F;

// More terms would halve the margins below, but cost more than the few samples in doubt.
inline float reduced_sine(float r) {
  // Minimax for the absolute error of r * P(r^2), rounded to single precision: printed by tables/fit_sine.py.
  constexpr float kC1 = 0.99999606609344482F;
  constexpr float kC3 = -0.16664618253707886F;
  constexpr float kC5 = 0.0083043109625577927F;
  constexpr float kC7 = -0.00018310191808268428F;
  const float z = r * r;
  return r * (((kC7 * z + kC5) * z + kC3) * z + kC1);
}

inline float fast_sine(float x) {
  constexpr float kInversePi = 0.318309886F;
  constexpr float kPiHigh = 3.140625F;
  constexpr float kPiLow = 9.67653589793e-4F;
  const float shifted = x * kInversePi + kRoundingShift;
  const float k = shifted - kRoundingShift;
  const float r = (x - k * kPiHigh) - k * kPiLow;
  const uint32_t odd_half_turns = std::bit_cast<uint32_t>(shifted) << 31U;
  return std::bit_cast<float>(std::bit_cast<uint32_t>(reduced_sine(r)) ^ odd_half_turns);
}

// Bound of the error of an estimated sine up to that phase, and of a few roundings of what it is multiplied by.
inline float estimate_error(float most_phase) { return most_phase * kReductionError + kFastSineError + 0x1p-22F; }

}  // namespace lrasynth
