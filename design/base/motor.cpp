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
