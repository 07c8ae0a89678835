// SPDX-License-Identifier: Apache-2.0
// Taps by motor and level, and the exports of short signals.
#include "transient/tap.h"

#include <algorithm>

#include "curves/curves.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {
namespace {

using Shape = TransientShape(int32_t drive_hz, int32_t level, int32_t intensity);

Tap shaped_tap(Shape* shape, const Profile& profile, int32_t level, int32_t intensity) {
  return {.transient = {profile.rate, shape(level_hz(profile, level), level, intensity)}};
}

// In the way of any motor, at the drive frequency of the profile's motor.
Tap routed_tap(const Motor& way, const Profile& profile, int32_t level, int32_t intensity) {
  switch (way.tap_kind) {
    case TapKind::kFourSegments:
      return shaped_tap(is_mid_level(level) ? mid_shape : edge_shape, profile, level, intensity);
    case TapKind::kStoredBurst:
      return {.replay = {row_at(way.bursts, level).burst, intensity}};
    default:
      return {};
  }
}

Tap routed_tap(int32_t way, int32_t level, int32_t intensity) {
  return routed_tap(motor_of(way), current_profile(), level, intensity);
}

int32_t write(const Tap& tap, uint8_t* out) {
  if (refuses(out, tap.length())) return -1;
  tap.draw({0, tap.length(), out});
  return 0;
}

// Refuses where there is no burst.
int32_t write_burst(const Tap& tap, uint8_t* out) { return tap.length() == 0 ? -1 : write(tap, out); }

}  // namespace

Tap tap_of(const Profile& profile, int32_t level, int32_t intensity) {
  return routed_tap(profile.motor, profile, level, intensity);
}

int32_t missing_tap(const Profile& profile, int32_t level) {
  const Motor& motor = profile.motor;
  if (motor.tap_kind == TapKind::kNone) return LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS;
  const bool missing = motor.tap_kind == TapKind::kStoredBurst && row_at(motor.bursts, level).burst.empty();
  return missing ? LRASYNTH_ERROR_LEVEL_WITHOUT_TAP : 0;
}

Tap tap_in_pattern(const Profile& profile, int32_t level, int32_t intensity) {
  return tap_of(profile, level, intensity_in_pattern(profile, level, intensity));
}

}  // namespace lrasynth

using namespace lrasynth;

// A length does not hang on the intensity.
int32_t getShortSignalDataLength(int32_t level) { return tap_of(current_profile(), level, 0).length(); }
int32_t getShortSignalDataLength_0832(int32_t level) { return routed_tap(LRASYNTH_MOTOR_832, level, 0).length(); }
int32_t getShortSignalDataLength_1040(int32_t level) { return routed_tap(LRASYNTH_MOTOR_1040, level, 0).length(); }
int32_t getShortSignalDataLength_9595(int32_t level) { return routed_tap(LRASYNTH_MOTOR_9595, level, 0).length(); }
int32_t get_custom_wave_len_0832(int32_t level) { return routed_tap(LRASYNTH_MOTOR_832, level, 0).length(); }
int32_t get_custom_wave_len_9595(int32_t level) { return routed_tap(LRASYNTH_MOTOR_9595, level, 0).length(); }

int32_t getShortSignalData(int32_t level, int32_t intensity, uint8_t* out) {
  const Profile profile = current_profile();
  return profile.motor.tap_kind == TapKind::kNone ? -1 : write(tap_of(profile, level, intensity), out);
}

int32_t getShortSignalData_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return write(routed_tap(LRASYNTH_MOTOR_832, level, intensity), out);
}

int32_t getShortSignalData_1040(int32_t level, int32_t intensity, uint8_t* out) {
  return write(routed_tap(LRASYNTH_MOTOR_1040, level, intensity), out);
}

int32_t getShortSignalData_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return write(routed_tap(LRASYNTH_MOTOR_9595, level, intensity), out);
}

int32_t shortWave_func(int32_t level, int32_t intensity, uint8_t* out) {
  return write(shaped_tap(mid_shape, current_profile(), level, intensity), out);
}

int32_t shortWave_func_custom(int32_t level, int32_t intensity, uint8_t* out) {
  return write(shaped_tap(edge_shape, current_profile(), level, intensity), out);
}

int32_t shortWave_func_custom_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return write_burst(routed_tap(LRASYNTH_MOTOR_832, level, intensity), out);
}

int32_t shortWave_func_custom_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return write_burst(routed_tap(LRASYNTH_MOTOR_9595, level, intensity), out);
}

int32_t transStringDataToInt(const uint8_t* source, int32_t count, int32_t* destination) {
  if (refuses(source, count) || refuses(destination, count)) return -1;
  for (int32_t i = 0; i < count; ++i) destination[i] = source[i];
  return 0;
}

int64_t lrasynth_tap_length(const lrasynth_profile* profile, int32_t level) {
  if (profile == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  const Profile resolved = profile_of(*profile);
  const int32_t missing = missing_tap(resolved, level);
  return missing != 0 ? missing : std::max(0, tap_of(resolved, level, 0).length());
}

int64_t lrasynth_tap_read(const lrasynth_profile* profile, int32_t level, int32_t intensity, int64_t first,
                          uint8_t* out, int64_t count) {
  if (profile == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  const Profile resolved = profile_of(*profile);
  const int32_t missing = missing_tap(resolved, level);
  return missing != 0 ? missing : read(tap_of(resolved, level, intensity), first, out, count);
}
