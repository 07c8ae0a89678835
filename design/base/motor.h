// SPDX-License-Identifier: Apache-2.0
// What a design needs to know of chip and motor.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "lrasynth.h"

namespace design {

// All that are known.
std::vector<int32_t> motors();
std::vector<int32_t> chips();

inline bool has_boost(const lrasynth_profile& profile) { return lrasynth_has_boost(&profile) != 0; }
inline bool has_shares(const lrasynth_profile& profile) { return lrasynth_has_shares(&profile) != 0; }
constexpr bool is_event_stream(const lrasynth_profile& profile) {
  return profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM;
}

// Whether a chip type is one of its own, and not another that acts as 0.
bool is_chip(int32_t chip);

bool has_taps(const lrasynth_profile& profile);

// Why a motor without taps is refused.
std::string tap_fault(const lrasynth_profile& profile);

// "motor 1040", and chip and boost where they are not the usual ones.
std::string name_of(const lrasynth_profile& profile);

inline double resonance_of(const lrasynth_profile& profile) { return lrasynth_resonance_hz(&profile); }

// The intensity at which a tap of a pattern is driven.
inline int32_t driven_intensity(const lrasynth_profile& profile, int32_t level, int32_t intensity) {
  return lrasynth_tap_driven(&profile, level, intensity);
}

// Hertz and gain at a frequency offset of a continuous vibration, -50..50.
inline int32_t hertz_at(const lrasynth_profile& profile, int32_t offset) {
  return lrasynth_offset_hz(&profile, offset);
}
inline double gain_at(const lrasynth_profile& profile, int32_t offset) {
  return static_cast<double>(lrasynth_offset_gain(&profile, offset));
}

// How far hertz that are played may be from those that were asked for.
inline double near_hz(double asked) { return std::max(4.0, 0.03 * asked); }

// The largest magnitude that a sample code holds.
constexpr double kFullScale = 127;

// Hertz and full amplitude at all frequency offsets of a motor.
class Tuning {
 public:
  explicit Tuning(const lrasynth_profile& profile);

  double hertz(int32_t offset) const { return hertz_[index(offset)]; }
  double full(int32_t offset) const { return full_[index(offset)]; }
  // The offset of the nearest frequency.
  int32_t nearest(double hz) const;

 private:
  static size_t index(int32_t offset) { return static_cast<size_t>(offset + 50); }

  std::array<double, 101> hertz_;
  std::array<double, 101> full_;
};

// A piece of a tap that is made of segments; what stored bursts are made of is not told.
struct TapSegment {
  const char* name;
  int32_t hz;  // 0: silent
  double length_ms;
};

std::vector<TapSegment> tap_segments(const lrasynth_profile& profile, int32_t level);

}  // namespace design
