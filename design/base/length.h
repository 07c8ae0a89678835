// SPDX-License-Identifier: Apache-2.0
// The one way to ask the library for a length: what it refuses is never taken for one.
#pragma once

#include <cstdint>
#include <string>

#include "lrasynth.h"

namespace design {

struct Length {
  int64_t samples = 0;     // of an event stream: bytes
  std::string fault = {};  // why there is none, in the library's words
};

inline Length checked(int64_t answer) { return answer < 0 ? Length{0, lrasynth_error_text(answer)} : Length{answer}; }

inline Length tap_length(const lrasynth_profile& profile, int32_t level) {
  return checked(lrasynth_tap_length(&profile, level));
}

inline Length pattern_length(const lrasynth_profile& profile, const lrasynth_pattern& pattern) {
  return checked(lrasynth_pattern_length(&profile, &pattern));
}

}  // namespace design
