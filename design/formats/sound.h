// SPDX-License-Identifier: Apache-2.0
// Sound as taps and curves.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "design/formats/drawing.h"
#include "design/formats/hearing.h"
#include "lrasynth.h"

namespace design {

struct SoundOptions {
  bool taps = true;
  bool curves = true;
  double floor_db = -40;  // against full scale, after the gain: what is weaker is rest
  double gain_db = 0;
  double from_ms = 0;  // of the sound, up to kLongestMs; times of the result count from here
  double to_ms = 0;    // likewise; 0: its end
};

// What the options may be, in decibels.
constexpr int32_t kLeastFloorDb = -80;
constexpr int32_t kMostFloorDb = -6;
constexpr int32_t kLeastGainDb = -60;
constexpr int32_t kMostGainDb = 60;

// What is heard of, in samples a second.
constexpr double kLeastSoundRate = 1000;
constexpr double kMostSoundRate = 384'000;

// Listens to a sound of any length up to that of the longest pattern, of which it keeps a few numbers a millisecond.
// Onsets become taps: as strong as their peak, as crisp as they are bright. What sounds between them becomes curves,
// of as few points as play within 2 dB of its envelope: on the motor a curve has the amplitude of the sound, the gain
// of its frequency being made up for. A tap plays alone for its length, so the curves take nothing from there.
//
// A sound of which most lies near the motor's frequencies keeps its hertz. Of any other the brightness, from 60 Hz to
// 6 kHz on a scale of octaves, becomes a place on the motor's range of offsets and levels.
class Listener {
 public:
  // Samples of full scale are 1 or -1.
  Listener(double rate, const SoundOptions& options);

  // The next samples of one channel. Those that lie outside from..to are passed over.
  void hear(std::span<const float> samples);

  // Whether there is any use in more of them.
  bool wants_more() const { return drawing_.faults.count == 0 && heard_ < end_; }

  // Once, behind the last sample. Faults are those of the sound: a sample that is no number, too long, no such rate.
  Drawing drawing(const lrasynth_profile& profile);

 private:
  void fault(std::string what);

  double rate_;
  SoundOptions options_;
  int64_t first_;  // samples that count
  int64_t end_;
  float gain_;
  int64_t heard_ = 0;
  Hearing hearing_;
  Drawing drawing_;
};

}  // namespace design
