// SPDX-License-Identifier: Apache-2.0
// What a design needs to know of chip and motor.
#include "design/base/motor.h"

#include <algorithm>

#include "design/base/length.h"
#include "design/base/text.h"

namespace design {

std::vector<int32_t> motors() {
  std::vector<int32_t> all;
  for (int32_t i = 0; lrasynth_motor(i) != 0; ++i) all.push_back(lrasynth_motor(i));
  return all;
}

std::vector<int32_t> chips() {
  std::vector<int32_t> all;
  for (int32_t i = 0; lrasynth_chip(i) >= 0; ++i) all.push_back(lrasynth_chip(i));
  return all;
}

bool is_chip(int32_t chip) {
  const std::vector<int32_t> known = chips();
  return std::find(known.begin(), known.end(), chip) != known.end();
}

bool has_taps(const lrasynth_profile& profile) { return tap_length(profile, 0).fault.empty(); }

std::string tap_fault(const lrasynth_profile& profile) { return text("motor %d has no taps", profile.motor_type); }

std::string name_of(const lrasynth_profile& profile) {
  std::string name = text("motor %d", profile.motor_type);
  if (has_boost(profile) && profile.boost_flag != 1) name += ", boost off";
  if (profile.chip_type != 0) name += text(", chip %d", profile.chip_type);
  return name;
}

Tuning::Tuning(const lrasynth_profile& profile) {
  for (int32_t offset = -50; offset <= 50; ++offset) {
    hertz_[index(offset)] = hertz_at(profile, offset);
    full_[index(offset)] = gain_at(profile, offset) * 128;
  }
}

// Frequencies ascend with their offsets.
int32_t Tuning::nearest(double hz) const {
  const auto above = std::lower_bound(hertz_.begin(), hertz_.end(), hz);
  const auto at = static_cast<int32_t>(above - hertz_.begin()) - 50;
  if (at == -50 || at == 51) return std::min(at, 50);
  return hz - hertz(at - 1) < hertz(at) - hz ? at - 1 : at;
}

std::vector<TapSegment> tap_segments(const lrasynth_profile& profile, int32_t level) {
  static constexpr const char* kNames[LRASYNTH_SEGMENTS] = {"drive", "zero time", "F1", "F2"};
  lrasynth_segment told[LRASYNTH_SEGMENTS];
  const int32_t count = lrasynth_tap_segments(&profile, level, told);
  std::vector<TapSegment> segments;
  for (int32_t i = 0; i < count; ++i) {
    segments.push_back({kNames[i], told[i].frequency_hz, 1000.0 * told[i].length / profile.sample_rate});
  }
  return segments;
}

}  // namespace design
