// SPDX-License-Identifier: Apache-2.0
// Taps by motor and level, and the exports of short signals.
#include "transient/tap.h"

#include <algorithm>

#include "curves/curves.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {
Tap tap_of(const Profile& profile, int32_t level, int32_t intensity) {
  switch (profile.motor.tap_kind) {
    case TapKind::kFourSegments:
      return {.transient = level_transient(profile, level, intensity)};
    case TapKind::kStoredBurst:
      return {.replay = {row_at(bursts_of(profile.motor.code), level).burst, intensity}};
    default:
      return {};
  }
}

int64_t longest_tap(const Profile& profile) {
  std::size_t longest_burst = 0;
  for (const BurstBand& band : bursts_of(profile.motor.code))
    longest_burst = std::max(longest_burst, band.burst.size());
  return std::max(longest_transient(profile.rate), static_cast<int64_t>(longest_burst));
}

int32_t missing_tap(const Profile& profile, int32_t level) {
  const Motor& motor = profile.motor;
  if (motor.tap_kind == TapKind::kNone) return LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS;
  const bool missing = motor.tap_kind == TapKind::kStoredBurst && row_at(bursts_of(motor.code), level).burst.empty();
  return missing ? LRASYNTH_ERROR_LEVEL_WITHOUT_TAP : 0;
}

Tap tap_in_pattern(const Profile& profile, int32_t level, int32_t intensity) {
  return tap_of(profile, level, intensity_in_pattern(profile, level, intensity));
}

}  // namespace lrasynth

using namespace lrasynth;

int32_t lrasynth_tap_driven(const lrasynth_profile* profile, int32_t level, int32_t intensity) {
  return profile == nullptr ? 0 : intensity_in_pattern(profile_of(*profile), level, intensity);
}

int32_t lrasynth_tap_segments(const lrasynth_profile* profile, int32_t level, lrasynth_segment* segments) {
  if (profile == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  const Profile resolved = profile_of(*profile);
  if (const int32_t missing = missing_tap(resolved, level); missing != 0) return missing;
  if (resolved.motor.tap_kind != TapKind::kFourSegments) return 0;
  if (segments == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  tell_segments(resolved, level, segments);
  return LRASYNTH_SEGMENTS;
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

#ifndef LRASYNTH_NO_BARE_NAMES

namespace {

Tap tap_of_motor(int32_t motor, int32_t level, int32_t intensity) {
  return tap_of(with_motor(motor), level, intensity);
}

// Refuses where there is no burst.
int32_t write_burst(const Tap& tap, uint8_t* out) { return tap.length() == 0 ? -1 : write(tap, out); }

}  // namespace

// A length does not hang on the intensity.
int32_t getShortSignalDataLength(int32_t level) { return tap_of(current_profile(), level, 0).length(); }
int32_t getShortSignalDataLength_0832(int32_t level) { return tap_of_motor(LRASYNTH_MOTOR_832, level, 0).length(); }
int32_t getShortSignalDataLength_1040(int32_t level) { return level_transient(current_profile(), level, 0).length(); }
int32_t getShortSignalDataLength_9595(int32_t level) { return tap_of_motor(LRASYNTH_MOTOR_9595, level, 0).length(); }
int32_t get_custom_wave_len_0832(int32_t level) { return tap_of_motor(LRASYNTH_MOTOR_832, level, 0).length(); }
int32_t get_custom_wave_len_9595(int32_t level) { return tap_of_motor(LRASYNTH_MOTOR_9595, level, 0).length(); }

int32_t getShortSignalData(int32_t level, int32_t intensity, uint8_t* out) {
  const Profile profile = current_profile();
  return profile.motor.tap_kind == TapKind::kNone ? -1 : write(tap_of(profile, level, intensity), out);
}

int32_t getShortSignalData_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return write(tap_of_motor(LRASYNTH_MOTOR_832, level, intensity), out);
}

int32_t getShortSignalData_1040(int32_t level, int32_t intensity, uint8_t* out) {
  return write(level_transient(current_profile(), level, intensity), out);
}

int32_t getShortSignalData_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return write(tap_of_motor(LRASYNTH_MOTOR_9595, level, intensity), out);
}

int32_t shortWave_func_custom_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return write_burst(tap_of_motor(LRASYNTH_MOTOR_832, level, intensity), out);
}

int32_t shortWave_func_custom_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return write_burst(tap_of_motor(LRASYNTH_MOTOR_9595, level, intensity), out);
}

int32_t transStringDataToInt(const uint8_t* source, int32_t count, int32_t* destination) {
  if (refuses(source, count) || refuses(destination, count)) return -1;
  for (int32_t i = 0; i < count; ++i) destination[i] = source[i];
  return 0;
}

#endif  // LRASYNTH_NO_BARE_NAMES
