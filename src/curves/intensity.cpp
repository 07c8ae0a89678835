// SPDX-License-Identifier: Apache-2.0
// Intensity curves and their exports.
#include "curves/intensity.h"

#include "curves/frequency.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"

namespace lrasynth {
namespace {

int32_t intensity_on(int32_t motor, int32_t level, int32_t intensity) {
  return intensity_in_pattern(motor_of(motor), level, intensity);
}

float gain_of(int32_t motor, int32_t offset) {
  return gain_at(motor_of(motor).gain_at(current_profile().boost_flag), offset);
}

}  // namespace

// The narrowing to single precision lifts products that fall just short of a whole number: 90 * 0.7 is 63.
int32_t intensity_in_pattern(const Motor& motor, int32_t level, int32_t intensity) {
  if (motor.shares.empty()) return intensity;
  const double driven = intensity * row_at(motor.shares, level).share;
  return truncate(static_cast<float>(driven));
}

float gain_at(const GainCurve& curve, int32_t offset) {
  const int32_t clamped = clamped_offset(offset);
  const double square = clamped * clamped;
  return static_cast<float>(square / curve.divisor + curve.floor);
}

}  // namespace lrasynth

using namespace lrasynth;

int32_t getIntensity(int32_t level, int32_t intensity) {
  return intensity_in_pattern(current_profile().motor, level, intensity);
}

int32_t getIntensity_0832(int32_t level, int32_t intensity) {
  return intensity_on(LRASYNTH_MOTOR_832, level, intensity);
}

int32_t getIntensity_1040(int32_t level, int32_t intensity) {
  return intensity_on(LRASYNTH_MOTOR_1040, level, intensity);
}

int32_t getIntensity_9595(int32_t level, int32_t intensity) {
  return intensity_on(LRASYNTH_MOTOR_9595, level, intensity);
}

float getIntensityMax(int32_t offset) {
  const Profile profile = current_profile();
  return gain_at(profile.motor.gain_at(profile.boost_flag), offset);
}

float getIntensityMax_0832(int32_t offset) { return gain_of(LRASYNTH_MOTOR_832, offset); }
float getIntensityMax_1040(int32_t offset) { return gain_of(LRASYNTH_MOTOR_1040, offset); }
float getIntensityMax_9595(int32_t offset) { return gain_of(LRASYNTH_MOTOR_9595, offset); }
