// Taps by motor and level, and the exports of short signals.
#include "transient/tap.h"

#include "curves/frequency.h"
#include "curves/intensity.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {
namespace {

using MakeTransient = Transient(Rate rate, int32_t drive_hz, int32_t level, int32_t intensity);

Tap transient_tap(MakeTransient* make, const Profile& profile, int32_t level, int32_t intensity) {
  return Tap(make(profile.rate, level_hz(profile.motor, level), level, intensity));
}

// A length does not hang on the intensity.
int32_t length_of(int32_t way, int32_t level) {
  return routed_tap(motor_of(way), current_profile(), level, 0).length();
}

int32_t write(const Tap& tap, uint8_t* out) {
  const int32_t length = tap.length();
  if (refuses(out, length)) return -1;
  tap.draw({0, length, out});
  return 0;
}

int32_t write_routed(int32_t way, int32_t level, int32_t intensity, uint8_t* out) {
  return write(routed_tap(motor_of(way), current_profile(), level, intensity), out);
}

// Refuses where there is no burst.
int32_t write_burst(int32_t way, int32_t level, int32_t intensity, uint8_t* out) {
  return length_of(way, level) == 0 ? -1 : write_routed(way, level, intensity, out);
}

int32_t write_transient(MakeTransient* make, int32_t level, int32_t intensity, uint8_t* out) {
  return write(transient_tap(make, current_profile(), level, intensity), out);
}

}  // namespace

int32_t Tap::length() const {
  const auto* const transient = std::get_if<Transient>(&way_);
  return transient != nullptr ? transient->length() : std::get_if<Replay>(&way_)->length();
}

void Tap::draw(const Window<uint8_t>& window) const {
  const auto* const transient = std::get_if<Transient>(&way_);
  return transient != nullptr ? transient->draw(window) : std::get_if<Replay>(&way_)->draw(window);
}

Tap tap_of(const Profile& profile, int32_t level, int32_t intensity) {
  return routed_tap(profile.motor, profile, level, intensity);
}

Tap tap_in_pattern(const Profile& profile, int32_t level, int32_t intensity) {
  return tap_of(profile, level, intensity_in_pattern(profile.motor, level, intensity));
}

Tap routed_tap(const Motor& way, const Profile& profile, int32_t level, int32_t intensity) {
  if (way.tap_kind != TapKind::kFourSegments) return Tap(Replay(way, level, intensity));
  return transient_tap(is_mid_level(level) ? mid_transient : edge_transient, profile, level, intensity);
}

}  // namespace lrasynth

int32_t getShortSignalDataLength(int32_t level) {
  return lrasynth::tap_of(lrasynth::current_profile(), level, 0).length();
}

int32_t getShortSignalData(int32_t level, int32_t intensity, uint8_t* out) {
  const lrasynth::Profile profile = lrasynth::current_profile();
  if (profile.motor.tap_kind == lrasynth::TapKind::kNone) return -1;
  return lrasynth::write(lrasynth::tap_of(profile, level, intensity), out);
}

int32_t getShortSignalDataLength_0832(int32_t level) { return lrasynth::length_of(LRASYNTH_MOTOR_832, level); }
int32_t getShortSignalDataLength_1040(int32_t level) { return lrasynth::length_of(LRASYNTH_MOTOR_1040, level); }
int32_t getShortSignalDataLength_9595(int32_t level) { return lrasynth::length_of(LRASYNTH_MOTOR_9595, level); }

int32_t getShortSignalData_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_routed(LRASYNTH_MOTOR_832, level, intensity, out);
}

int32_t getShortSignalData_1040(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_routed(LRASYNTH_MOTOR_1040, level, intensity, out);
}

int32_t getShortSignalData_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_routed(LRASYNTH_MOTOR_9595, level, intensity, out);
}

int32_t shortWave_func(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_transient(lrasynth::mid_transient, level, intensity, out);
}

int32_t shortWave_func_custom(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_transient(lrasynth::edge_transient, level, intensity, out);
}

int32_t get_custom_wave_len_0832(int32_t level) { return lrasynth::length_of(LRASYNTH_MOTOR_832, level); }
int32_t get_custom_wave_len_9595(int32_t level) { return lrasynth::length_of(LRASYNTH_MOTOR_9595, level); }

int32_t shortWave_func_custom_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_burst(LRASYNTH_MOTOR_832, level, intensity, out);
}

int32_t shortWave_func_custom_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_burst(LRASYNTH_MOTOR_9595, level, intensity, out);
}
