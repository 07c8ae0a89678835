// SPDX-License-Identifier: Apache-2.0
// What a design needs to know of chip and motor.
#include "design/base/motor.h"

#include "design/base/length.h"
#include "design/base/text.h"

namespace design {

void use(const lrasynth_profile& profile) {
  IC_TYPE = profile.chip_type;
  SAMPLE_RATE = profile.sample_rate;
  giMotorType = profile.motor_type;
  giBoostFlg = profile.boost_flag;
}

bool has_taps(const lrasynth_profile& profile) { return tap_length(profile, 0).fault.empty(); }

std::string tap_fault(const lrasynth_profile& profile) { return text("motor %d has no taps", profile.motor_type); }

std::string name_of(const lrasynth_profile& profile) {
  std::string name = text("motor %d", profile.motor_type);
  if (has_boost(profile.motor_type) && profile.boost_flag != 1) name += ", boost off";
  if (profile.chip_type != 0) name += text(", chip %d", profile.chip_type);
  return name;
}

double resonance_of(const lrasynth_profile& profile) {
  use(profile);
  return getF0();
}

int32_t driven_intensity(const lrasynth_profile& profile, int32_t level, int32_t intensity) {
  if (!has_shares(profile.motor_type)) return intensity;
  use(profile);
  return getIntensity(level, intensity);
}

int32_t hertz_at(const lrasynth_profile& profile, int32_t offset) {
  use(profile);
  return getFrequency_4096(getF0(), offset);
}

float gain_at(const lrasynth_profile& profile, int32_t offset) {
  use(profile);
  return getIntensityMax(offset);
}

std::vector<TapSegment> tap_segments(const lrasynth_profile& profile, int32_t level) {
  if (profile.motor_type != LRASYNTH_MOTOR_1040) return {};
  use(profile);
  const bool mid = getA1(level, 100) != 0;  // only the mid-level shape sounds F1
  const auto ms = [&](int32_t hz, float cycles) { return 1000.0 * get_sine_wave_len(hz, cycles) / SAMPLE_RATE; };
  return {
      {"drive", getFrequency(level), ms(getFrequency(level), mid ? 1.0F : getC0(level))},
      {"zero time", 0, static_cast<double>(getZeroTime(level))},
      {"F1", mid ? getF1(level) : 0, ms(getF1(level), mid ? 0.5F : getC1())},
      {"F2", mid ? getF2() : 0, ms(getF2(), mid ? 0.5F : getC2())},
  };
}

}  // namespace design
