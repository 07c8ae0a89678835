// SPDX-License-Identifier: Apache-2.0
// Where taps are heard in a sound, and what a motor's own taps sound like.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "design/formats/hearing.h"
#include "lrasynth.h"

namespace design {

// Something that rises suddenly and does not last.
struct Onset {
  size_t attack = 0;   // the frame in which it has most of its strength
  float peak = 0;      // largest magnitude
  double octaves = 0;  // above 1 Hz
};

// In ascending time, kLeastBetweenTaps frames apart at least, with peaks above the floor.
std::vector<Onset> onsets_of(const Hearing& hearing, std::span<const Frame> frames, float floor);

constexpr size_t kLeastBetweenTaps = 30;

// The taps of a motor as they are heard, by level.
class TapSounds {
 public:
  // The motor has taps.
  explicit TapSounds(const lrasynth_profile& profile);

  struct Sound {
    double length_ms = 0;
    double attack_ms = 0;  // from its start
    double peak = 0;       // driven at 100
    double octaves = 0;
  };

  const Sound& at(int level) const { return sounds_[static_cast<size_t>(level)]; }
  // The level that sounds most like it.
  int nearest(double octaves) const;

 private:
  std::vector<Sound> sounds_;
};

}  // namespace design
