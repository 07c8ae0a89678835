// SPDX-License-Identifier: Apache-2.0
// What a design needs to know of chip and motor.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lrasynth.h"

namespace design {

constexpr int32_t kMotors[] = {LRASYNTH_MOTOR_832, LRASYNTH_MOTOR_1040, LRASYNTH_MOTOR_9595, LRASYNTH_MOTOR_81540};

// Only one motor has a boost, and only one plays taps weaker inside a pattern.
constexpr bool has_boost(int32_t motor) { return motor == LRASYNTH_MOTOR_832; }
constexpr bool has_shares(int32_t motor) { return motor == LRASYNTH_MOTOR_1040; }
constexpr bool is_event_stream(const lrasynth_profile& profile) {
  return profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM;
}

// Makes it the process-wide profile, under which alone the library has curves, timing and tones: front ends have one
// thread.
void use(const lrasynth_profile& profile);

// Whether a chip type is one of its own, and not another that acts as 0.
constexpr bool is_chip(int32_t chip) {
  return chip == 0 || chip == LRASYNTH_CHIP_HALF_RATE || chip == LRASYNTH_CHIP_EVENT_STREAM;
}

bool has_taps(const lrasynth_profile& profile);

// Why a motor without taps is refused.
std::string tap_fault(const lrasynth_profile& profile);

// "motor 1040", and chip and boost where they are not the usual ones.
std::string name_of(const lrasynth_profile& profile);

// Resonant frequency in Hz.
double resonance_of(const lrasynth_profile& profile);

// The intensity at which a tap of a pattern is driven.
int32_t driven_intensity(const lrasynth_profile& profile, int32_t level, int32_t intensity);

// Hertz and gain at a frequency offset of a continuous vibration, -50..50.
int32_t hertz_at(const lrasynth_profile& profile, int32_t offset);
float gain_at(const lrasynth_profile& profile, int32_t offset);

// The largest magnitude that a sample code holds.
constexpr double kFullScale = 127;

// The four segments of a tap of motor 1040; what the stored bursts of the other motors are made of is not told.
struct TapSegment {
  const char* name;
  int32_t hz;  // 0: silent
  double length_ms;
};

std::vector<TapSegment> tap_segments(const lrasynth_profile& profile, int32_t level);

}  // namespace design
