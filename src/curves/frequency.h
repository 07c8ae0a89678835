// SPDX-License-Identifier: Apache-2.0
// Frequency curves: level or frequency offset to whole hertz.
#pragma once

#include <cstdint>
#include <span>

#include "profile/motor.h"

namespace lrasynth {

// The drive frequency of a level (clamped to 0..100).
int32_t level_hz(const Motor& motor, int32_t level);

// The frequency at an offset (clamped to -50..50) around a base.
int32_t offset_hz(std::span<const OffsetPiece> pieces, int32_t base_hz, int32_t offset);

// Hz per step, in single precision throughout; 0 for no difference or no steps.
float hz_per_step(int32_t from_hz, int32_t to_hz, int32_t step_count);

// Frequency offsets are effective in -50..50.
int32_t clamped_offset(int32_t offset);

}  // namespace lrasynth
