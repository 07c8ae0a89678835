// SPDX-License-Identifier: Apache-2.0
// The frequency of a continuous vibration over time: what its points say, and what its carrier has.
#pragma once

#include <vector>

#include "design/waveform.h"

namespace design {

// From one point to the next. The phase is frequency times time, so that the carrier's frequency moves twice as far as
// the points do; below 0 Hz it is felt as its magnitude.
struct Sweep {
  size_t to_point;  // 1..3
  Span span;        // from the event's start
  double from_hz;   // of both
  double to_hz;     // as the point says

  double reached_hz() const { return 2 * to_hz - from_hz; }
  double reached_at(double ms) const { return from_hz + (reached_hz() - from_hz) * (ms - span.from) / span.length(); }
};

// Those that last.
std::vector<Sweep> sweeps_of(const lrasynth_profile& profile, const Event& event);

}  // namespace design
