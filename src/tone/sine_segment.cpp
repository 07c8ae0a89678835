// The sine segment and its export as a tone of offset values.
#include "tone/sine_segment.h"

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

// In 64 bits, so that no intensity overflows.
float peak_of(int32_t amplitude) { return static_cast<float>(int64_t{amplitude} * 255 / 100); }

}  // namespace

SineSegment::SineSegment(int32_t frequency_hz, float cycles, int32_t amplitude, bool mirrored)
    : grid_(frequency_hz, cycles),
      angular_(static_cast<double>(frequency_hz) * kFullTurn),
      peak_(peak_of(amplitude)),
      mirrored_(mirrored) {}

inline float SineSegment::offset_value(float s) const {
  const float value = std::min(peak_ * s, kClip) + kRest;
  return mirrored_ ? mirror(value) : value;
}

// The time is single precision, phase and sine are double, everything after the sine is single again.
float SineSegment::exact(int32_t i) const {
  if (i == 0) return kRest;
  const double phase = angular_ * static_cast<double>(grid_.time(i));
  return offset_value(static_cast<float>(std::sin(phase)));
}

void SineSegment::estimate(int32_t first, int32_t n, float* offsets) const {
  for (int32_t j = 0; j < n; ++j) {
    const double phase = angular_ * static_cast<double>(grid_.time(first + j));
    offsets[j] = offset_value(fast_sine(static_cast<float>(phase)));
  }
}

// The narrowed phase errs by 2^-24 of itself; sine and product are rounded to single precision on both sides.
float SineSegment::error(int32_t last) const {
  const double phase = std::fabs(angular_ * static_cast<double>(grid_.time(last)));
  if (!(phase <= double{kFastSineLimit})) return kUnproven;
  const float amplitude = std::fabs(peak_);
  return offset_error(amplitude, amplitude * (static_cast<float>(phase) * 0x1p-24F + kFastSineError + 0x1p-22F));
}

}  // namespace lrasynth

int32_t get_sine(int32_t frequencyHz, int32_t strength, float* out, float cycles) {
  const lrasynth::SineSegment segment(frequencyHz, cycles, strength);
  if (lrasynth::refuses(out, segment.count())) return -1;
  for (int32_t i = 0; i < segment.count(); ++i) out[i] = segment.exact(i);
  return 0;
}
