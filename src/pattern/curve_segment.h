// SPDX-License-Identifier: Apache-2.0
// The curve segment of a continuous vibration: a carrier whose frequency runs linearly from one point to the next,
// under a ramp from one amplitude to the next.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "curves/curves.h"
#include "profile/profile.h"
#include "profile/sample_code.h"
#include "tone/ramp.h"
#include "tone/speculation.h"

namespace lrasynth {

struct CurvePoint {
  int32_t at;  // samples from the first point
  int32_t frequency_hz;
  float amplitude;  // sample units
};

// The phase starts at 0 and is the instantaneous frequency times the time since then, not an accumulated sum.
class CurveSegment {
 public:
  CurveSegment(Rate rate, const CurvePoint& from, const CurvePoint& to, int32_t count)
      : period_(rate.period()),
        slope_(hz_per_step(from.frequency_hz, to.frequency_hz, count)),
        start_hz_(static_cast<float>(from.frequency_hz)),
        highest_hz_(static_cast<float>(std::max(from.frequency_hz, to.frequency_hz))),
        ramp_(count, from.amplitude, to.amplitude) {}

  bool silent() const { return ramp_.constant() && ramp_.start() == 0.0F; }

  // Both sines and the product of envelope and carrier are double precision, everything else single.
  float exact(int32_t i) const {
    const auto envelope = static_cast<double>(ramp_.exact(sample_time(period_, i)));
    const double carrier = std::sin(static_cast<double>(phase(i)));
    return static_cast<float>(carrier * envelope) + kRest;
  }

  void estimate(int32_t first, int32_t n, float* offsets) const {
    const auto constant = [ramp = ramp_](float) { return ramp.start(); };
    const auto quarter = [ramp = ramp_](float time) { return ramp.quarter_estimate(time); };
    const auto general = [ramp = ramp_](float time) { return ramp.estimate(time); };
    if (ramp_.constant()) return estimate_under(first, n, offsets, constant);
    if (ramp_.is_quarter(sample_time(period_, first + n - 1))) return estimate_under(first, n, offsets, quarter);
    estimate_under(first, n, offsets, general);
  }

  // Carrier and envelope each err by their sine, and by a few roundings of 2^-24.
  float error(int32_t last) const {
    const float time = sample_time(period_, last);
    const float most_phase = std::fabs(time) * highest_hz_ * 6.3F;
    if (!(most_phase <= kFastSineLimit)) return kUnproven;
    const float amplitude = ramp_.bound(time);
    return offset_error(amplitude, (amplitude + ramp_.range()) * estimate_error(most_phase));
  }

 private:
  float phase(int32_t i) const {
    const float frequency_hz = (slope_ * static_cast<float>(i)) + start_hz_;
    return sample_time(period_, i) * (frequency_hz * kTwoPi);
  }

  // On a copy of the segment, which the compiler knows not to change with what is written.
  template <class Envelope>
  void estimate_under(int32_t first, int32_t n, float* offsets, Envelope envelope) const {
    const CurveSegment segment = *this;
    for (int32_t j = 0; j < n; ++j) {
      const float time = sample_time(segment.period_, first + j);
      offsets[j] = fast_sine(segment.phase(first + j)) * envelope(time) + kRest;
    }
  }

  float period_;  // seconds
  float slope_;   // Hz per sample
  float start_hz_;
  float highest_hz_;
  Ramp ramp_;
};

}  // namespace lrasynth
