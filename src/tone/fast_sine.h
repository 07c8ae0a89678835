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

// For |x| <= kFastSineLimit, |fast_sine(x) - sin(x)| <= kFastSineError. By steps, with u = 2^-24:
//   reduction    x - k pi in three parts (W. J. Cody, W. Waite: Software Manual for the Elementary Functions, 1980).
//                The first two have 8 bits, so that their products with k < 2^16 are exact, and so are the first two
//                differences: multiples of 2^-23 below 2. The third part, below 0.17 in all, errs by 1e-8 in its
//                constant and product, the third difference by u where |r| > 1 and the sine's slope is at most 0.55,
//                by u / 2 elsewhere.
//   polynomial   5.7e-9 on |r| <= 1.6, which r does not leave when the quotient rounds to the next k; the rounding of
//                the coefficients adds less than 2e-9.
//   evaluation   the cubic term is below 0.6 and errs by less than 3 u of itself, the last sum by u / 2.
// Together below 3.3 u = 2.0e-7. The largest over all floats of the range is 1.23e-7.
constexpr float kFastSineError = 2.2e-7F;

// The polynomial alone, for a phase within +-kReducedSineLimit: the same bound of the error, without the reduction.
constexpr float kReducedSineLimit = 1.6F;

inline float reduced_sine(float r) {
  // Minimax for the absolute error of r + r^3 * P(r^2), rounded to single precision.
  constexpr float kC3 = -0.16666655242443085F;
  constexpr float kC5 = 0.008332980796694756F;
  constexpr float kC7 = -0.0001980401575565338F;
  constexpr float kC9 = 2.5943761556845857e-6F;
  const float z = r * r;
  return r + (r * z) * (((kC9 * z + kC7) * z + kC5) * z + kC3);
}

inline float fast_sine(float x) {
  constexpr float kInversePi = 0.318309886F;
  constexpr float kPiHigh = 3.140625F;
  constexpr float kPiMiddle = 9.65118408203125e-4F;
  constexpr float kPiLow = 2.5351815901134616e-6F;
  const float shifted = x * kInversePi + kRoundingShift;
  const float k = shifted - kRoundingShift;
  const float r = ((x - k * kPiHigh) - k * kPiMiddle) - k * kPiLow;
  const uint32_t odd_half_turns = std::bit_cast<uint32_t>(shifted) << 31U;
  return std::bit_cast<float>(std::bit_cast<uint32_t>(reduced_sine(r)) ^ odd_half_turns);
}

}  // namespace lrasynth
