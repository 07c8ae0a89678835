// The device profile: five process-wide variables and their setters.
#include "profile/profile.h"

#include "profile/arithmetic.h"

int32_t IC_TYPE = 0;
int32_t SAMPLE_RATE = 24000;
int32_t giMotorType = lrasynth::kMotor1040;
int32_t giBoostFlg = 1;
int32_t F0 = 170;

namespace lrasynth {

int32_t base_frequency_hz() {
  switch (giMotorType) {
    case kMotor0832:
      return 235;
    case kMotor081540:
      return 130;
    default:
      return 170;
  }
}

void store_f0(int32_t frequency_hz) { __atomic_store_n(&F0, frequency_hz, __ATOMIC_RELAXED); }

}  // namespace lrasynth

void setChipType(int32_t chipType) {
  constexpr int32_t kHalfRateChip = 1;
  IC_TYPE = chipType;
  SAMPLE_RATE = chipType == kHalfRateChip ? 12000 : 24000;
}

int32_t setMotorType(int32_t motorType) {
  giMotorType = motorType;
  return 0;
}

int32_t getMotorType() { return giMotorType; }

void setF0(int32_t frequencyHz) { lrasynth::store_f0(frequencyHz); }

int32_t getF0() {
  const int32_t frequency_hz = lrasynth::base_frequency_hz();
  lrasynth::store_f0(frequency_hz);
  return frequency_hz;
}

int32_t setBoostFlg(int32_t flag) {
  giBoostFlg = lrasynth::wrapping_subtract(1, flag);
  return 0;
}

int32_t getBoostFlg() { return giBoostFlg; }
