// SPDX-License-Identifier: Apache-2.0
// An estimate of how the motor moves: displacement and acceleration of a second-order resonator that a waveform drives.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "design/waveform/waveform.h"

namespace design {

// x'' + w / Q x' + w^2 x = w^2 u: a drive u that stays displaces it by u, one at its resonance swings it up to Q u.
struct Resonator {
  double hz = 0;       // 0: the motor's own
  double quality = 0;  // above 1/2; 0: the motor's own
  double rated_g =
      1;  // amplitude of the acceleration in g that a full-scale tone at the resonance reaches when it lasts
};

// The quality that a motor's gain curve implies: the one with which gain times response is flattest over all offsets.
// In hundredths, so that people can type what is told.
double quality_of(const lrasynth_profile& profile);

// With the motor's own in place of what is 0.
Resonator resolved(Resonator resonator, const lrasynth_profile& profile);

// "170 Hz, Q 2.7, 1 g rated"
std::string words_of(const Resonator& resolved);

// The amplitude of the acceleration in g under a full-scale tone of that frequency that lasts.
double tone_g(const Resonator& resolved, double hz);

// The resonator over time, with a drive that is held from sample to sample. Exact at the samples: no step is
// integrated, the state is carried on by the matrix exponential of the equation.
class Oscillation {
 public:
  Oscillation(const Resonator& resonator, double sample_rate);

  // On to the next sample, under that drive. Returns the displacement there.
  double step(double drive) {
    const double from_drive = displacement_ - drive;
    displacement_ = drive + decay_ * (cos_ * from_drive + sin_ * (damping_ * from_drive + velocity_));
    velocity_ = decay_ * (cos_ * velocity_ - sin_ * (stiffness_ * from_drive + damping_ * velocity_));
    return displacement_;
  }

  // x'' / w^2 at the end of a step under that drive: of a tone at the resonance the acceleration has the amplitude of
  // the displacement.
  double acceleration(double drive) const { return drive - displacement_ - drag_ * velocity_; }

  // The square of the amplitude with which it would swing on without a drive.
  double energy() const {
    const double turned = damping_ * displacement_ + velocity_;
    return displacement_ * displacement_ + turned * turned;
  }

 private:
  double displacement_ = 0;
  double velocity_ = 0;  // per radian of the damped oscillation
  double damping_;       // of the decay per radian of it
  double stiffness_;     // 1 + damping^2
  double drag_;          // of the velocity
  double decay_;         // per sample
  double cos_;           // of the radians per sample
  double sin_;
};

// In units in which 1 is the swing that a full-scale tone at the resonance reaches when it lasts.
struct Response {
  Resonator resonator;  // its frequency resolved
  double peak = 0;
  double effective = 0;     // root mean square over the waveform's length
  double rise_ms = 0;       // from the waveform's start until the swing first has 90 % of its peak
  double ring_down_ms = 0;  // from the last time with 90 % to the last time with 10 % of it, perhaps after the waveform
  double felt_ms = 0;       // up to there it has 10 %
};

using Number = std::pair<std::string, std::string>;  // its name, and its value with the unit

// Rise and ring-down are of use where the waveform is one burst.
std::vector<Number> numbers_of(const Response& response, bool is_burst);

// The motion under a waveform, simulated once, and then told of any stretch of time.
class Motion {
 public:
  // The lowest and the highest displacement; of no time 1 and -1.
  struct Extremes {
    double low = 1;
    double high = -1;

    void add(Extremes other) { *this = {std::min(low, other.low), std::max(high, other.high)}; }
  };

  Motion(Waveform waveform, const Resonator& resonator);

  const Response& response() const { return response_; }
  // Of that many equal parts of the time.
  std::vector<Extremes> columns(Span shown, size_t count) const;

 private:
  static constexpr int64_t kBlock = 256;  // samples

  struct Block {
    Oscillation before;
    Extremes extremes = {};
    double most_energy = 0;
  };

  double step(Oscillation& motor, double drive);
  // Visits the samples of a block again: visit(sample, displacement, energy).
  template <class Visit>
  void replay(size_t block, Visit visit) const;
  // Whether the swing has that share of its peak, and the samples in which it has.
  bool has(double share, double energy) const;
  int64_t first_with(double share) const;
  int64_t last_with(double share) const;

  Waveform waveform_;
  double unit_;  // of drive, per sample unit
  std::vector<Block> blocks_;
  int64_t length_ = 0;  // samples, until it has rung down
  double strongest_ = 0;
  Response response_;
};

// From a waveform's start until it and its motion, where that is looked at, are over.
inline Span felt_span(const Waveform& waveform, const Motion* motion) {
  return {0, std::max(waveform.length_ms(), motion == nullptr ? 0 : motion->response().felt_ms)};
}

}  // namespace design
