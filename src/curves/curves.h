// SPDX-License-Identifier: Apache-2.0
// The curves: level or frequency offset to whole hertz, level to a tap's intensity, offset to gain.
#pragma once

#include <cstdint>

#include "profile/profile.h"

namespace lrasynth {

// The drive frequency of a level (clamped to 0..100).
int32_t level_hz(const Profile& profile, int32_t level);

// The offset within -50..50 at which a vibration plays.
int32_t clamped_offset(int32_t offset);

// The frequency at an offset (clamped) around a base.
int32_t offset_hz(const Profile& profile, int32_t base_hz, int32_t offset);

// Hz per step, in single precision throughout; 0 for no difference or no steps.
float hz_per_step(int32_t from_hz, int32_t to_hz, int32_t step_count);

// Intensity at which a tap of this level is driven inside a pattern.
int32_t intensity_in_pattern(const Profile& profile, int32_t level, int32_t intensity);

// Gain of continuous vibration at an offset (clamped).
float gain_at(const Profile& profile, int32_t offset);

}  // namespace lrasynth
