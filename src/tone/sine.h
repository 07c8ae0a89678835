// SPDX-License-Identifier: Apache-2.0
// Sine bursts: their grid of whole samples, the segment that transients are made of, and the plain tone.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "profile/profile.h"
#include "profile/sample_code.h"
#include "tone/ramp.h"
#include "tone/speculation.h"
#include "tone/window.h"

namespace lrasynth {

// A burst's samples, which span its cycles exactly: since their count is truncated, the step is not the sample period
// but the burst's duration over the count.
struct TimeGrid {
  TimeGrid() = default;  // of no samples

  // The count is negative where a rate, frequency or number of cycles is, and 0 for a frequency of 0.
  TimeGrid(Rate rate, int32_t frequency_hz, float cycles);

  float time(int32_t i) const { return step * static_cast<float>(i); }

  int32_t count = 0;
  float step = 0.0F;  // seconds
};

class SineSegment {
 public:
  SineSegment() = default;  // of no samples

  // Amplitude in percent of 255. A mirrored segment is turned upside down about rest.
  SineSegment(Rate rate, int32_t frequency_hz, float cycles, int32_t amplitude, bool mirrored = false);

  int32_t count() const { return grid_.count; }
  bool silent() const { return peak_ == 0.0F; }

  float exact(int32_t i) const;
  void estimate(int32_t first, int32_t n, float* offsets) const;
  float error(int32_t last) const;

 private:
  TimeGrid grid_;
  double angular_ = 0;  // radians per second
  float peak_ = 0;      // sample units
  bool mirrored_ = false;
};

// Unlike the segment: single-precision phase, amplitude in sample units, no clip, no forced rest.
class Tone {
 public:
  Tone(Rate rate, int32_t frequency_hz, float cycles, int32_t amplitude)
      : grid_(rate, frequency_hz, cycles),
        angular_(static_cast<float>(frequency_hz) * kTwoPi),
        amplitude_(static_cast<float>(amplitude)) {}

  int32_t count() const { return grid_.count; }
  int64_t length() const { return std::max(0, grid_.count); }

  // As sample codes, of which the first is 0.
  void draw(const Window<uint8_t>& window) const;

  float exact(int32_t i) const {
    const auto s = static_cast<float>(std::sin(static_cast<double>(phase(i))));
    return amplitude_ * s + kRest;
  }

  void estimate(int32_t first, int32_t n, float* offsets) const {
    for (int32_t j = 0; j < n; ++j) offsets[j] = amplitude_ * fast_sine(phase(first + j)) + kRest;
  }

  float error(int32_t last) const {
    const float most_phase = std::fabs(phase(last));
    if (!(most_phase <= kFastSineLimit)) return kUnproven;
    const float amplitude = std::fabs(amplitude_);
    return offset_error(amplitude, amplitude * estimate_error(most_phase));
  }

 private:
  float phase(int32_t i) const { return angular_ * grid_.time(i); }

  TimeGrid grid_;
  float angular_;  // radians per second
  float amplitude_;
};

// A tone of half periods.
inline Tone tone_of(Rate rate, int32_t frequency_hz, int32_t half_periods, int32_t amplitude) {
  return {rate, frequency_hz, static_cast<float>(half_periods) * 0.5F, amplitude};
}

}  // namespace lrasynth
