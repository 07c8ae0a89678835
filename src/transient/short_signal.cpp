// Short signals by motor model, and their exports.
#include "transient/short_signal.h"

#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"
#include "transient/synthesiser.h"
#include "transient/table_replay.h"
#include "transient/timing.h"

namespace lrasynth {
namespace {

// Length and data of one tap in the routing of a motor model that has taps.
int32_t write_tap(int32_t motor, int32_t level, int32_t intensity, uint8_t* out) {
  const int32_t length = tap_length(motor, level);
  if (refuses(out, length)) return -1;
  render_tap(motor, level, intensity, out, length);
  return 0;
}

}  // namespace

bool has_taps(int32_t motor) { return motor == kMotor1040 || motor == kMotor0832 || motor == kMotor9595; }

int32_t tap_length(int32_t motor, int32_t level) {
  switch (motor) {
    case kMotor9595:
      return static_cast<int32_t>(burst_9595(level).size());
    case kMotor0832:
      return static_cast<int32_t>(burst_0832(level).size());
    case kMotor1040:
      return transient_length(is_mid_level(level) ? mid_shape(level) : edge_shape(level));
    default:
      return 0;
  }
}

void render_tap(int32_t motor, int32_t level, int32_t intensity, uint8_t* out, int32_t capacity) {
  if (motor == kMotor9595) return replay(burst_9595(level), intensity, out, capacity);
  if (motor == kMotor0832) return replay(burst_0832(level), intensity, out, capacity);
  const auto render = is_mid_level(level) ? render_mid_tap : render_edge_tap;
  render(level, intensity, out, capacity);
}

}  // namespace lrasynth

int32_t getShortSignalDataLength(int32_t level) { return lrasynth::tap_length(giMotorType, level); }

int32_t getShortSignalData(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::has_taps(giMotorType) ? lrasynth::write_tap(giMotorType, level, intensity, out) : -1;
}

int32_t getShortSignalDataLength_0832(int32_t level) { return lrasynth::tap_length(lrasynth::kMotor0832, level); }
int32_t getShortSignalDataLength_1040(int32_t level) { return lrasynth::tap_length(lrasynth::kMotor1040, level); }
int32_t getShortSignalDataLength_9595(int32_t level) { return lrasynth::tap_length(lrasynth::kMotor9595, level); }

int32_t getShortSignalData_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_tap(lrasynth::kMotor0832, level, intensity, out);
}

int32_t getShortSignalData_1040(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_tap(lrasynth::kMotor1040, level, intensity, out);
}

int32_t getShortSignalData_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_tap(lrasynth::kMotor9595, level, intensity, out);
}
