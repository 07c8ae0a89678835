// SPDX-License-Identifier: Apache-2.0
// Frequency and intensity curves, piecewise and tuned per motor, and their exports.
#include "curves/curves.h"

#include <algorithm>

#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {
namespace {

// The curves themselves do not clamp. Slope first, then the intercept, both in double precision; the value is single
// from the narrowing on.
int32_t on_levels(const Profile& profile, int32_t level) {
  const LevelPiece& piece = row_at(profile.motor.levels, level);
  const double rise = wrap(int64_t{level} - 50) * piece.slope;
  return narrow(static_cast<float>(rise + piece.intercept_hz));
}

// A piece without slope hands the base back exactly, even where it does not fit single precision.
int32_t on_offsets(const Profile& profile, int32_t base_hz, int32_t offset) {
  const Motor& motor = profile.motor;
  const OffsetPiece& piece =
      row_at(profile.boost_flag == 1 && has_boost(motor) ? motor.boosted_offsets : motor.offsets, offset);
  if (piece.slope == 0) return base_hz;
  const double shift = piece.slope * offset + piece.lift_hz;
  return narrow(static_cast<float>(shift + base_hz));
}

}  // namespace

int32_t clamped_offset(int32_t offset) { return std::clamp(offset, -50, 50); }

int32_t level_hz(const Profile& profile, int32_t level) { return on_levels(profile, std::clamp(level, 0, 100)); }

int32_t offset_hz(const Profile& profile, int32_t base_hz, int32_t offset) {
  return on_offsets(profile, base_hz, clamped_offset(offset));
}

float hz_per_step(int32_t from_hz, int32_t to_hz, int32_t step_count) {
  if (from_hz == to_hz || step_count == 0) return 0.0F;
  const float difference = static_cast<float>(to_hz) - static_cast<float>(from_hz);
  return difference / static_cast<float>(step_count);
}

// The narrowing to single precision lifts products that fall just short of a whole number: 90 * 0.7 is 63.
int32_t intensity_in_pattern(const Profile& profile, int32_t level, int32_t intensity) {
  if (profile.motor.shares.empty()) return intensity;
  const double driven = intensity * row_at(profile.motor.shares, level).share;
  return truncate(static_cast<float>(driven));
}

float gain_at(const Profile& profile, int32_t offset) {
  const GainCurve& curve = profile.boost_flag != 0 ? profile.motor.boosted_gain : profile.motor.gain;
  const int32_t clamped = clamped_offset(offset);
  const double square = clamped * clamped;
  return static_cast<float>(square / curve.divisor + curve.floor);
}

}  // namespace lrasynth

using namespace lrasynth;

int32_t lrasynth_offset_hz(const lrasynth_profile* profile, int32_t offset) {
  if (profile == nullptr) return 0;
  const Profile resolved = profile_of(*profile);
  return offset_hz(resolved, resolved.motor.base_hz, offset);
}

float lrasynth_offset_gain(const lrasynth_profile* profile, int32_t offset) {
  return profile == nullptr ? 0.0F : gain_at(profile_of(*profile), offset);
}

#ifndef LRASYNTH_NO_BARE_NAMES

int32_t getFrequency(int32_t level) { return level_hz(current_profile(), level); }
int32_t getFrequency_0832_ShortData(int32_t level) { return on_levels(with_motor(LRASYNTH_MOTOR_832), level); }
int32_t getFrequency_1040_ShortData(int32_t level) { return on_levels(with_motor(LRASYNTH_MOTOR_1040), level); }
int32_t getFrequency_9595_ShortData(int32_t level) { return on_levels(with_motor(LRASYNTH_MOTOR_9595), level); }
int32_t getFrequency_0815_ShortData(int32_t level) { return on_levels(with_motor(LRASYNTH_MOTOR_81540), level); }

int32_t getFrequency_4096(int32_t baseHz, int32_t offset) { return offset_hz(current_profile(), baseHz, offset); }

int32_t getFrequency_0832(int32_t baseHz, int32_t offset) {
  return on_offsets(with_motor(LRASYNTH_MOTOR_832), baseHz, offset);
}

int32_t getFrequency_1040(int32_t baseHz, int32_t offset) {
  return on_offsets(with_motor(LRASYNTH_MOTOR_1040), baseHz, offset);
}

int32_t getFrequency_9595(int32_t baseHz, int32_t offset) {
  return on_offsets(with_motor(LRASYNTH_MOTOR_9595), baseHz, offset);
}

int32_t getFrequency_081540(int32_t baseHz, int32_t offset) {
  return on_offsets(with_motor(LRASYNTH_MOTOR_81540), baseHz, offset);
}

float getFrequencyStepValue(int32_t fromHz, int32_t toHz, int32_t stepCount) {
  return hz_per_step(fromHz, toHz, stepCount);
}

int32_t getIntensity(int32_t level, int32_t intensity) {
  return intensity_in_pattern(current_profile(), level, intensity);
}

int32_t getIntensity_0832(int32_t level, int32_t intensity) {
  return intensity_in_pattern(with_motor(LRASYNTH_MOTOR_832), level, intensity);
}

int32_t getIntensity_1040(int32_t level, int32_t intensity) {
  return intensity_in_pattern(with_motor(LRASYNTH_MOTOR_1040), level, intensity);
}

int32_t getIntensity_9595(int32_t level, int32_t intensity) {
  return intensity_in_pattern(with_motor(LRASYNTH_MOTOR_9595), level, intensity);
}

float getIntensityMax(int32_t offset) { return gain_at(current_profile(), offset); }
float getIntensityMax_0832(int32_t offset) { return gain_at(with_motor(LRASYNTH_MOTOR_832), offset); }
float getIntensityMax_1040(int32_t offset) { return gain_at(with_motor(LRASYNTH_MOTOR_1040), offset); }
float getIntensityMax_9595(int32_t offset) { return gain_at(with_motor(LRASYNTH_MOTOR_9595), offset); }

#endif  // LRASYNTH_NO_BARE_NAMES
