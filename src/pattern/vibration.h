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

struct Vibration {
  // The window counts from the event's start. What of it lies beyond the event is left alone.
  void draw(const Window<uint8_t>& window) const;

  Rate rate;
  int32_t length;  // in samples, 32-bit; nothing is drawn below 1
  CurvePoint points[kPoints];
};

Vibration vibration_of(const Profile& profile, const Record& record);

}  // namespace lrasynth
