// SPDX-License-Identifier: Apache-2.0
// The quarter-sine ramp: how an intensity moves from one value to another.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "tone/fast_sine.h"

namespace lrasynth {

// 2 pi in single precision.
constexpr float kTwoPi = 6.2831855F;

// Time of sample i in seconds on the grid of the sample period.
inline float sample_time(float period, int32_t i) { return period * static_cast<float>(i); }

class Ramp {
 public:
  Ramp(int32_t count, float start, float end);

  // The sine is double precision, everything else single; product before sum.
  float exact(float time) const {
    const auto s = static_cast<float>(std::sin(static_cast<double>(angular_ * time)));
    return rise_ * s + start_;
  }

  float estimate(float time) const { return rise_ * fast_sine(angular_ * time) + start_; }

  // The same up to a time within the first quarter turn.
  float quarter_estimate(float time) const { return rise_ * reduced_sine(angular_ * time) + start_; }
  bool is_quarter(float time) const { return std::fabs(angular_ * time) <= kReducedSineLimit; }

  // Largest magnitude up to that time: one of the ends while the sine is not negative.
  float bound(float time) const {
    const float phase = angular_ * time;
    const bool within_half_turn = phase >= 0.0F && phase <= 3.1416F;
    return within_half_turn ? std::max(std::fabs(start_), std::fabs(start_ + rise_)) : std::fabs(start_) + range();
  }

  float range() const { return std::fabs(rise_); }

  // start() at every sample, exactly, since the sine is multiplied by 0.
  bool constant() const { return rise_ == 0.0F; }
  float start() const { return start_; }

 private:
  float angular_;  // radians per second
  float start_;
  float rise_;
};

}  // namespace lrasynth
