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
  size_t to_point;   // 1..3 of its record
  Span span;         // that is played, from the event's start
  double length_ms;  // from point to point
  double from_hz;    // of both, as the points say
  double to_hz;
  double from_amplitude;  // likewise, in sample units
  double to_amplitude;
  double quarters;  // of a sine that the envelope runs through

  // At the end.
  double reached_hz() const { return hz_at(span.to); }
  double reached_amplitude() const { return amplitude_at(span.to); }

  double hz_at(double ms) const { return from_hz + 2 * (to_hz - from_hz) * share_at(ms); }
  double amplitude_at(double ms) const;

 private:
  double share_at(double ms) const { return (ms - span.from) / length_ms; }
};

// Those that last, of a vibration or a curve; none of a tap. The profile is the one that the event is fitted to.
std::vector<Stretch> stretches_of(const lrasynth_profile& profile, const Event& event);

// A point as it is asked for.
struct Asked {
  double ms;  // from the event's start
  double intensity;
  double hz;
  double amplitude;  // in sample units
};

// The line that a vibration or a curve is to follow; of a tap, and of a record of which points may lie beyond, none.
std::vector<Asked> line_of(const lrasynth_profile& profile, const Event& event);

}  // namespace design
