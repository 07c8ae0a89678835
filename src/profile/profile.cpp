// SPDX-License-Identifier: Apache-2.0
// The device profile: five process-wide variables and their setters.
#include "profile/profile.h"

#include <iterator>

#include "lrasynth.h"

#ifndef LRASYNTH_NO_BARE_NAMES
int32_t IC_TYPE = 0;
int32_t SAMPLE_RATE = 24000;
int32_t giMotorType = LRASYNTH_MOTOR_1040;
int32_t giBoostFlg = 1;
int32_t F0 = 170;
#endif

namespace lrasynth {
namespace {

struct Chip {
  int32_t type;
  int32_t rate_hz;
};

// Every other one has the rate of the first.
constexpr Chip kChips[] = {{0, 24000}, {LRASYNTH_CHIP_HALF_RATE, 12000}, {LRASYNTH_CHIP_EVENT_STREAM, 24000}};

int32_t rate_of_chip(int32_t chip_type) {
  for (const Chip& chip : kChips) {
    if (chip.type == chip_type) return chip.rate_hz;
  }
  return kChips[0].rate_hz;
}

}  // namespace

Profile profile_of(const lrasynth_profile& profile) {
  return {profile.chip_type, {profile.sample_rate}, motor_of(profile.motor_type), profile.boost_flag};
}

}  // namespace lrasynth

using namespace lrasynth;

lrasynth_profile lrasynth_profile_of(int32_t chip_type, int32_t motor_type, int32_t boost_flag) {
  return {chip_type, rate_of_chip(chip_type), motor_type, boost_flag};
}

int32_t lrasynth_chip(int32_t index) { return index >= 0 && index < std::ssize(kChips) ? kChips[index].type : -1; }

int32_t lrasynth_resonance_hz(const lrasynth_profile* profile) {
  return profile == nullptr ? 0 : motor_of(profile->motor_type).base_hz;
}

int32_t lrasynth_has_boost(const lrasynth_profile* profile) {
  return profile != nullptr && has_boost(motor_of(profile->motor_type)) ? 1 : 0;
}

int32_t lrasynth_has_shares(const lrasynth_profile* profile) {
  return profile != nullptr && !motor_of(profile->motor_type).shares.empty() ? 1 : 0;
}

#ifndef LRASYNTH_NO_BARE_NAMES

namespace {

void store_f0(int32_t frequency_hz) { __atomic_store_n(&F0, frequency_hz, __ATOMIC_RELAXED); }

}  // namespace

namespace lrasynth {

Profile current_profile() { return with_motor(giMotorType); }

Profile with_motor(int32_t motor_type) { return profile_of({IC_TYPE, SAMPLE_RATE, motor_type, giBoostFlg}); }

void publish_f0(const Motor& motor) { store_f0(motor.base_hz); }

}  // namespace lrasynth

void setChipType(int32_t chipType) {
  IC_TYPE = chipType;
  SAMPLE_RATE = rate_of_chip(chipType);
}

int32_t setMotorType(int32_t motorType) {
  giMotorType = motorType;
  return 0;
}

int32_t getMotorType() { return giMotorType; }

void setF0(int32_t frequencyHz) { store_f0(frequencyHz); }

int32_t getF0() {
  const Profile profile = current_profile();
  publish_f0(profile.motor);
  return profile.motor.base_hz;
}

int32_t setBoostFlg(int32_t flag) {
  giBoostFlg = wrap(int64_t{1} - flag);
  return 0;
}

int32_t getBoostFlg() { return giBoostFlg; }

#endif  // LRASYNTH_NO_BARE_NAMES
