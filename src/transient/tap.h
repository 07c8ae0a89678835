// SPDX-License-Identifier: Apache-2.0
// The tap, resolved: what will be drawn, whichever way its motor makes taps. It needs no profile any more.
#pragma once

#include <cstdint>

#include "profile/profile.h"
#include "transient/replay.h"
#include "transient/transient.h"

namespace lrasynth {

// One of the two, or neither where the motor or the level has no tap.
struct Tap {
  int32_t length() const { return transient.length() + replay.length(); }

  void draw(const Window<uint8_t>& window) const {
    transient.draw(window);
    replay.draw(window);
  }

  Transient transient = {};
  Replay replay = {};
};

// A level's tap as the motor makes taps.
Tap tap_of(const Profile& profile, int32_t level, int32_t intensity);

// Samples that no tap of the profile outlasts, whatever its level.
int64_t longest_tap(const Profile& profile);

// Why a level has no tap, as one of the public header's errors, or 0.
int32_t missing_tap(const Profile& profile, int32_t level);

// The level's tap as it plays inside a pattern, at its level's share of the intensity.
Tap tap_in_pattern(const Profile& profile, int32_t level, int32_t intensity);

}  // namespace lrasynth
