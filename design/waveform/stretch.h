// SPDX-License-Identifier: Apache-2.0
// What plays between two points of a continuous vibration: its carrier's frequency and its envelope over time.
#pragma once

#include <vector>

#include "design/waveform/waveform.h"

namespace design {

// From one point to the next. The carrier's phase is frequency times time, so that its frequency moves twice as far as
// the points do; below 0 Hz it is felt as its magnitude. The envelope runs along a sine whose rate does not follow the
// sample rate: through a quarter of it, from strength to strength, at 24000 samples a second, and at 12000 through half
// of it, up to the strength of the next point and back.
struct Stretch {
  size_t to_point;  // 1..3
  Span span;        // from the event's start
  double from_hz;   // of both, as the points say
  double to_hz;
  double from_amplitude;  // likewise, in sample units
  double to_amplitude;
  double quarters;  // of a sine that the envelope runs through

  // At the end.
  double reached_hz() const { return 2 * to_hz - from_hz; }
  double reached_amplitude() const { return amplitude_at(span.to); }

  double hz_at(double ms) const { return from_hz + (reached_hz() - from_hz) * share_at(ms); }
  double amplitude_at(double ms) const;

 private:
  double share_at(double ms) const { return (ms - span.from) / span.length(); }
};

// Those that last.
std::vector<Stretch> stretches_of(const lrasynth_profile& profile, const Vibration& vibration);

}  // namespace design
