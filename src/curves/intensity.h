// SPDX-License-Identifier: Apache-2.0
// Intensity curves: how strong a tap inside a pattern and a continuous vibration are driven.
#pragma once

#include <cstdint>

#include "profile/motor.h"

namespace lrasynth {

// Intensity at which a tap of this level is driven inside a pattern.
int32_t intensity_in_pattern(const Motor& motor, int32_t level, int32_t intensity);

// Gain of continuous vibration at a frequency offset (clamped to -50..50).
float gain_at(const GainCurve& curve, int32_t offset);

}  // namespace lrasynth
