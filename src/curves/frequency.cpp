// SPDX-License-Identifier: Apache-2.0
// Frequency curves, piecewise linear, and their exports.
#include "curves/frequency.h"

#include <algorithm>

#include "curves/narrow.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"

namespace lrasynth {
namespace {

// The curves themselves do not clamp. Slope first, then the intercept, both in double precision; the value is single
// from the narrowing on.
int32_t on_levels(const Motor& motor, int32_t level) {
  const LevelPiece& piece = row_at(motor.levels, level);
  const double rise = wrapping_subtract(level, 50) * piece.slope;
  return narrow(static_cast<float>(rise + piece.intercept_hz));
}

// A piece without slope hands the base back exactly, even where it does not fit single precision.
int32_t on_offsets(std::span<const OffsetPiece> pieces, int32_t base_hz, int32_t offset) {
  const OffsetPiece& piece = row_at(pieces, offset);
  if (piece.slope == 0) return base_hz;
  const double shift = piece.slope * offset + piece.lift_hz;
  return narrow(static_cast<float>(shift + base_hz));
}

// Of a fixed motor model, whatever motor the profile names.
int32_t on_levels_of(int32_t motor, int32_t level) { return on_levels(motor_of(motor), level); }

int32_t on_offsets_of(int32_t motor, int32_t base_hz, int32_t offset) {
  return on_offsets(motor_of(motor).offsets_at(current_profile().boost_flag), base_hz, offset);
}

}  // namespace

int32_t level_hz(const Motor& motor, int32_t level) { return on_levels(motor, std::clamp(level, 0, 100)); }

int32_t offset_hz(std::span<const OffsetPiece> pieces, int32_t base_hz, int32_t offset) {
  return on_offsets(pieces, base_hz, clamped_offset(offset));
}

float hz_per_step(int32_t from_hz, int32_t to_hz, int32_t step_count) {
  if (from_hz == to_hz || step_count == 0) return 0.0F;
  const float difference = static_cast<float>(to_hz) - static_cast<float>(from_hz);
  return difference / static_cast<float>(step_count);
}

int32_t clamped_offset(int32_t offset) { return std::clamp(offset, -50, 50); }

}  // namespace lrasynth

using namespace lrasynth;

int32_t getFrequency(int32_t level) { return level_hz(current_profile().motor, level); }

int32_t getFrequency_0832_ShortData(int32_t level) { return on_levels_of(LRASYNTH_MOTOR_832, level); }
int32_t getFrequency_1040_ShortData(int32_t level) { return on_levels_of(LRASYNTH_MOTOR_1040, level); }
int32_t getFrequency_9595_ShortData(int32_t level) { return on_levels_of(LRASYNTH_MOTOR_9595, level); }
int32_t getFrequency_0815_ShortData(int32_t level) { return on_levels_of(LRASYNTH_MOTOR_81540, level); }

int32_t getFrequency_4096(int32_t baseHz, int32_t offset) {
  const Profile profile = current_profile();
  return offset_hz(profile.motor.offsets_at(profile.boost_flag), baseHz, offset);
}

int32_t getFrequency_0832(int32_t baseHz, int32_t offset) { return on_offsets_of(LRASYNTH_MOTOR_832, baseHz, offset); }

int32_t getFrequency_1040(int32_t baseHz, int32_t offset) { return on_offsets_of(LRASYNTH_MOTOR_1040, baseHz, offset); }

int32_t getFrequency_9595(int32_t baseHz, int32_t offset) { return on_offsets_of(LRASYNTH_MOTOR_9595, baseHz, offset); }

int32_t getFrequency_081540(int32_t baseHz, int32_t offset) {
  return on_offsets_of(LRASYNTH_MOTOR_81540, baseHz, offset);
}

float getFrequencyStepValue(int32_t fromHz, int32_t toHz, int32_t stepCount) {
  return hz_per_step(fromHz, toHz, stepCount);
}
