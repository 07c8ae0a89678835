// SPDX-License-Identifier: Apache-2.0
// Sine bursts and their exports.
#include "tone/sine.h"

#include <algorithm>
#include <cmath>

#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "tone/speculation.h"

namespace lrasynth {
namespace {

// A full turn as the segments have it, slightly less than 2 pi. Not to be replaced by the nearest double.
constexpr double kFullTurn = 6.2831853071586;

constexpr float kClip = 254.0F;  // of the product, from above only

// A whole number, in 64 bits, so that no intensity overflows.
float peak_of(int32_t amplitude) {
  const int64_t peak = int64_t{amplitude} * 255 / 100;
  return static_cast<float>(peak);
}

}  // namespace

// For the count the product first, then the quotient; for the step two quotients, not one by a product.
TimeGrid::TimeGrid(Rate rate, int32_t frequency_hz, float cycles) {
  if (frequency_hz == 0) return;
  const float product = rate.single() * cycles;
  count = truncate(product / static_cast<float>(frequency_hz));
  if (count < 1) return;
  const float duration = cycles / static_cast<float>(frequency_hz);
  step = duration / static_cast<float>(count);
}

SineSegment::SineSegment(Rate rate, int32_t frequency_hz, float cycles, int32_t amplitude, bool mirrored)
    : grid_(rate, frequency_hz, cycles),
      angular_(static_cast<double>(frequency_hz) * kFullTurn),
      peak_(peak_of(amplitude)),
      mirrored_(mirrored) {}

// The time is single precision, phase and sine are double, everything after the sine is single again.
float SineSegment::exact(int32_t i) const {
  if (i == 0) return kRest;
  const double phase = angular_ * static_cast<double>(grid_.time(i));
  const auto s = static_cast<float>(std::sin(phase));
  const float value = std::min(peak_ * s, kClip) + kRest;
  return mirrored_ ? mirror(value) : value;
}

// At the amplitudes that are estimated nothing reaches the clip.
void SineSegment::estimate(int32_t first, int32_t n, float* offsets) const {
  const float peak = mirrored_ ? -peak_ : peak_;
  const auto angular = static_cast<float>(angular_);
  const TimeGrid grid = grid_;
  for (int32_t j = 0; j < n; ++j) offsets[j] = peak * fast_sine(angular * grid.time(first + j)) + kRest;
}

// The single-precision phase errs by 2^-23 of itself; sine and product are rounded to single precision on both sides,
// and the mirror image once more.
float SineSegment::error(int32_t last) const {
  const double phase = std::fabs(angular_ * static_cast<double>(grid_.time(last)));
  if (!(phase <= static_cast<double>(kFastSineLimit))) return kUnproven;
  const float amplitude = std::fabs(peak_);
  const float relative_error = static_cast<float>(phase) * 0x1p-23F + estimate_error(static_cast<float>(phase));
  return offset_error(amplitude, amplitude * relative_error + kSumRounding);
}

void Tone::draw(const Window<uint8_t>& window) const {
  const Window<uint8_t> inside = window.of_piece(0, length());
  render<PlainCoding>(*this, inside);
  if (!inside.empty() && inside.first == 0) inside.out[0] = kFirstCode;
}

}  // namespace lrasynth

using namespace lrasynth;

int64_t lrasynth_tone_length(const lrasynth_profile* profile, int32_t frequency_hz, int32_t half_periods) {
  if (profile == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  return tone_of(profile_of(*profile).rate, frequency_hz, half_periods, 0).length();
}

int64_t lrasynth_tone_read(const lrasynth_profile* profile, int32_t frequency_hz, int32_t half_periods,
                           int32_t amplitude, int64_t first, uint8_t* out, int64_t count) {
  if (profile == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  return read(tone_of(profile_of(*profile).rate, frequency_hz, half_periods, amplitude), first, out, count);
}

#ifndef LRASYNTH_NO_BARE_NAMES

int32_t get_sine_wave_len(int32_t frequencyHz, float cycles) {
  return TimeGrid(current_profile().rate, frequencyHz, cycles).count;
}

int32_t get_sine(int32_t frequencyHz, int32_t strength, float* out, float cycles) {
  const SineSegment segment(current_profile().rate, frequencyHz, cycles, strength);
  if (refuses(out, segment.count())) return -1;
  for (int32_t i = 0; i < segment.count(); ++i) out[i] = segment.exact(i);
  return 0;
}

int32_t sine(int32_t halfPeriods, int32_t frequencyHz, int32_t amplitude, uint8_t* out) {
  return write(tone_of(current_profile().rate, frequencyHz, halfPeriods, amplitude), out);
}

#endif  // LRASYNTH_NO_BARE_NAMES
