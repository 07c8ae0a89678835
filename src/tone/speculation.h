// Speculate, prove, redo: how a source of sine samples becomes sample codes at a fraction of the sines' price.
//
// Only a byte is kept of each sample, and it rarely hangs on the last bits of a sine. So a block of offset values is
// estimated in single precision, in loops that vectorise; where an estimate is farther than its proven error from
// every whole number, truncation gives the same code as the defined value would. The few others are computed again by
// the definition, `exact`, which is the one reference for every sample.
//
// A source provides
//   float exact(int32_t i)                                      offset value of sample i by its definition
//   void estimate(int32_t first, int32_t n, float* offsets)     about the same for n samples from `first` on, and for
//                                                               more up to a whole step
//   float error(int32_t last)                                   bound of the difference up to sample `last`
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "curves/pieces.h"
#include "profile/arithmetic.h"
#include "profile/sample_code.h"
#include "tone/fast_sine.h"

namespace lrasynth {

constexpr int32_t kBlock = 256;

// Loops over a block run over whole steps: compilers then vectorise them without code for a remainder. What they write
// beyond n is never read; indices there may wrap.
constexpr int32_t kStep = 16;
static_assert(kBlock % kStep == 0);

template <class Body>
void for_whole_steps(int32_t n, Body body) {
  for (int32_t step = 0; step < n; step += kStep) {
    for (int32_t j = step; j < step + kStep; ++j) body(j);
  }
}

// An error without a proof.
constexpr float kUnproven = std::numeric_limits<float>::infinity();

// Full scale. Beyond it offset values could fall below 0, where truncation rounds the other way.
constexpr float kMaxEstimatedAmplitude = 127.0F;

// Half a unit in the last place of values below 256: one rounded sum of an offset value and a constant.
constexpr float kSumRounding = 0x1p-17F;

// Error of an estimated offset value, amplitude * sine + 128, where the sines and products before the sum err by
// `error`: estimate and definition round the sum.
inline float offset_error(float amplitude, float error) {
  return amplitude <= kMaxEstimatedAmplitude ? error + 2.0F * kSumRounding : kUnproven;
}

// Signed distance of an offset value from the nearest whole number.
inline float distance_to_whole(float offset_value) {
  return offset_value - ((offset_value + kRoundingShift) - kRoundingShift);
}

// Whether truncation could go either way. Written so that a NaN is in doubt too.
inline bool in_doubt(float offset_value, float margin) {
  return !(std::fabs(distance_to_whole(offset_value)) >= margin);
}

// A coding turns an offset value into a code. `kSwitch` is the whole offset value up to which codes count from 127,
// `kRounding` bounds what it rounds before it truncates, for values below 256.

// Codes the float and truncates (`sine` and continuous vibration).
struct PlainCoding {
  static constexpr float kSwitch = 128.0F;
  static constexpr float kRounding = kSumRounding;
  static int32_t code(float offset_value) { return truncate(code_offset(offset_value)); }
  static void settle(int32_t* /*codes*/, int32_t /*n*/) {}
};

// The code of an offset value that is not in doubt: its integer part, shifted.
template <class Coding>
int32_t undoubted_code(float offset_value) {
  const auto nearest = static_cast<int32_t>(std::bit_cast<uint32_t>(offset_value + kRoundingShift) -
                                            std::bit_cast<uint32_t>(kRoundingShift));
  const int32_t floor = nearest - static_cast<int32_t>(distance_to_whole(offset_value) < 0.0F);
  return floor + (offset_value > Coding::kSwitch ? -127 : 127);
}

// Wider margins leave too little to be worth a try.
constexpr float kMaxMargin = 0.125F;

// How far from a whole number an estimate must lie: half as far again as its error and the coding's.
template <class Coding, class Source>
float margin(const Source& source, int32_t last) {
  return 1.5F * (source.error(last) + Coding::kRounding);
}

// Codes from estimates, and which of them are in doubt.
template <class Coding, class Source>
void speculate(const Source& source, int32_t first, int32_t n, float margin, int32_t* codes, uint8_t* doubts) {
  float estimates[kBlock];
  source.estimate(first, n, estimates);
  for_whole_steps(n, [&](int32_t j) { codes[j] = undoubted_code<Coding>(estimates[j]); });
  for_whole_steps(n, [&](int32_t j) { doubts[j] = in_doubt(estimates[j], margin) ? 1 : 0; });
}

// The codes of up to a block of samples.
template <class Coding, class Source>
void code_block(const Source& source, int32_t first, int32_t n, int32_t* codes) {
  uint8_t doubts[kBlock];
  const float least_distance = margin<Coding>(source, first + n - 1);
  if (least_distance < kMaxMargin) {
    speculate<Coding>(source, first, n, least_distance, codes, doubts);
  } else {
    std::memset(doubts, 1, static_cast<std::size_t>(n));
    std::fill_n(codes, kBlock, 0);  // what lies beyond n is stored, too
  }
  const auto next_doubt = [&](int32_t from) -> int32_t {
    const void* const found = std::memchr(doubts + from, 1, static_cast<std::size_t>(n - from));
    return found == nullptr ? n : static_cast<int32_t>(static_cast<const uint8_t*>(found) - doubts);
  };
  for (int32_t j = next_doubt(0); j < n; j = next_doubt(j + 1)) codes[j] = Coding::code(source.exact(first + j));
}

// Writes n codes as integers or as bytes, their low 8 bits.
inline void put_codes(const int32_t* codes, int32_t n, int32_t* out) { std::copy_n(codes, n, out); }

inline void put_codes(const int32_t* codes, int32_t n, uint8_t* out) {
  uint8_t bytes[kBlock];
  for_whole_steps(n, [&](int32_t j) { bytes[j] = low_byte(codes[j]); });
  std::memcpy(out, bytes, static_cast<std::size_t>(n));
}

// Samples first .. first + count - 1 of the source.
template <class Coding, class Source, class Sample>
void render(const Source& source, Coding& coding, int32_t first, int32_t count, Sample* out) {
  int32_t codes[kBlock];
  for (const int32_t end = first + count; first < end;) {
    const int32_t n = std::min(kBlock, end - first);
    code_block<Coding>(source, first, n, codes);
    coding.settle(codes, n);
    put_codes(codes, n, out);
    out += n;
    first += n;
  }
}

}  // namespace lrasynth
