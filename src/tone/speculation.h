// SPDX-License-Identifier: Apache-2.0
// Speculate, prove, redo: how a source of sine samples becomes sample codes at a fraction of the sines' price.
//
// Only a byte is kept of each sample, and it rarely hangs on the last bits of a sine. So a block of offset values is
// estimated in single precision, in loops that vectorise; where an estimate is farther than its proven error from
// every whole number, truncation gives the same code as the defined value would. The few others are computed again by
// the definition, `exact`, which is the one reference for every sample.
#pragma once

#include <algorithm>
#include <cassert>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

#include "profile/arithmetic.h"
#include "profile/sample_code.h"
#include "tone/fast_sine.h"
#include "tone/window.h"

namespace lrasynth {

// Samples from 0 on, as offset values.
template <class Source>
concept SampleSource = requires(const Source& source, int32_t i, int32_t n, float* offsets) {
  { source.exact(i) } -> std::same_as<float>;  // sample i by its definition
  {source.estimate(i, n, offsets)};            // about the same for n samples from i on
  { source.error(i) } -> std::same_as<float>;  // bound of the difference up to sample i
};

constexpr int32_t kBlock = 256;

// An error without a proof.
constexpr float kUnproven = std::numeric_limits<float>::infinity();

// Half a unit in the last place of values below 256: one rounded sum of an offset value and a constant.
constexpr float kSumRounding = 0x1p-17F;

// Error of an estimated offset value, amplitude * sine + 128, where the sines and products before the sum err by
// `error`: estimate and definition round the sum. Beyond full scale offset values could fall below 0, where truncation
// rounds the other way.
inline float offset_error(float amplitude, float error) {
  return amplitude <= kFullScale ? error + 2.0F * kSumRounding : kUnproven;
}

// Marks the code of an estimate in doubt, which is negative then and never else.
constexpr int32_t kDoubtful = std::numeric_limits<int32_t>::min();

// The codes of n estimates: their integer parts, which count from 127 up to `last_low` and from 1 above it. In doubt
// are those whose distance from a whole number is below the margin, so that truncation could go either way, and NaN.
// Returns whether any is.
bool code_estimates(const float* estimates, int32_t n, float last_low, float margin, int32_t* codes);

// The first of n codes in doubt from j on, or n.
int32_t next_doubt(const int32_t* codes, int32_t j, int32_t n);

// Writes n codes as integers or as bytes, their low 8 bits.
void put_codes(const int32_t* codes, int32_t n, int32_t* out);
void put_codes(const int32_t* codes, int32_t n, uint8_t* out);

// A coding turns an offset value into a code. `kLastLow` is the whole offset value up to which codes count from
// 127, `kRounding` bounds what it rounds before it truncates, for values below 256. Where a code hangs on the one
// before, `begin` looks back from the first sample of a window and `settle` goes through the codes in order.

// Codes the float and truncates (`sine` and continuous vibration).
struct PlainCoding {
  static constexpr float kLastLow = 128.0F;
  static constexpr float kRounding = kSumRounding;
  static int32_t code(float offset_value) { return truncate(code_offset(offset_value)); }
  static void begin(const SampleSource auto& /*source*/, int32_t /*first*/) {}
  static void settle(int32_t* /*codes*/, int32_t /*n*/) {}
};

// Wider margins leave too little to be worth a try.
constexpr float kMaxMargin = 0.125F;

// How far from a whole number an estimate must lie: half as far again as its error and the coding's.
template <class Coding>
float margin(const SampleSource auto& source, int32_t last) {
  return 1.5F * (source.error(last) + Coding::kRounding);
}

// The codes of up to a block of samples.
template <class Coding>
void code_block(const SampleSource auto& source, int32_t first, int32_t n, int32_t* codes) {
  const float least_distance = margin<Coding>(source, first + n - 1);
  if (least_distance < kMaxMargin) {
    float estimates[kBlock];
    source.estimate(first, n, estimates);
    if (!code_estimates(estimates, n, Coding::kLastLow, least_distance, codes)) return;
  } else {
    std::fill_n(codes, n, kDoubtful);
  }
  for (int32_t j = next_doubt(codes, 0, n); j < n; j = next_doubt(codes, j + 1, n)) {
    codes[j] = Coding::code(source.exact(first + j));
  }
}

// The source's samples in the window, which lies within 2^31 samples.
template <class Coding, class Sample>
void render(const SampleSource auto& source, const Window<Sample>& window) {
  assert(window.first >= 0);
  Coding coding;
  coding.begin(source, static_cast<int32_t>(window.first));
  Sample* out = window.out;
  int32_t codes[kBlock];
  for (int64_t first = window.first; first < window.end; first += kBlock) {
    const auto n = static_cast<int32_t>(std::min<int64_t>(kBlock, window.end - first));
    code_block<Coding>(source, static_cast<int32_t>(first), n, codes);
    coding.settle(codes, n);
    put_codes(codes, n, out);
    out += n;
  }
}

}  // namespace lrasynth
