// Intensity curves: how strong a tap inside a pattern and a continuous vibration are driven.
#pragma once

#include <cstdint>

namespace lrasynth {

// Intensity of a tap of this level inside a long signal, for the profile's motor.
int32_t tap_intensity(int32_t level, int32_t intensity);

// Gain of continuous vibration at a frequency offset (clamped), for the profile's motor.
float offset_gain(int32_t offset);

}  // namespace lrasynth
