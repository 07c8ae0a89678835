// SPDX-License-Identifier: Apache-2.0
// Continuous vibration, resolved: a carrier whose frequency runs linearly between the points of a curve, under an
// envelope of quarter-sine ramps.
#pragma once

#include <cstdint>

#include "pattern/curve_segment.h"
#include "pattern/request.h"
#include "profile/profile.h"
#include "tone/window.h"

namespace lrasynth {

class Vibration {
 public:
  Vibration(const Profile& profile, const Record& record);

  // In samples, 32-bit; nothing is drawn below 1.
  int32_t length() const { return length_; }

  // The window counts from the event's start. What of it lies beyond the event is left alone.
  void draw(const Window<uint8_t>& window) const;

  static constexpr int32_t kPoints = 4;

  // In sample units. Points count from 0.
  float amplitude(int32_t point) const { return points_[point].amplitude; }

 private:
  Rate rate_;
  int32_t length_;
  CurvePoint points_[kPoints];
};

}  // namespace lrasynth
