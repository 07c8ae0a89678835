// SPDX-License-Identifier: Apache-2.0
// A pass that plays several times: which samples of the whole are copies, and of what.
#pragma once

#include <algorithm>
#include <cstdint>

#include "tone/window.h"

namespace lrasynth {

struct Repetition {
  int64_t pass = 0;    // samples of one pass
  int64_t copies = 0;  // of the pass, after it
  int64_t stride = 0;  // from one copy to the next

  // Of the last copy; of the pass where there is none.
  int64_t end() const { return pass + copies * stride; }

  // Samples from `at` on that go together: copies of the pass, or none of them.
  struct Run {
    bool copied;
    int64_t source;  // sample of the first pass, or `at` itself
    int64_t end;
  };

  // A pass longer than the stride overlaps its copies. Copied one after the other, sample by sample in ascending order,
  // the pass then repeats with the period of the stride.
  Run run_at(int64_t at, int64_t most) const {
    if (stride <= 0 || at >= end()) return {false, at, most};
    const int64_t phase = at % stride;
    const int64_t period = std::min(pass, stride);
    if (phase >= period) return {false, at, std::min(most, at + (stride - phase))};
    return {at >= stride, phase, std::min({most, end(), at + (period - phase)})};
  }
};

// Fills the window. `draw` draws windows of everything but the copies; these are copied from one stride before where
// the window reaches back so far, and drawn like the pass where not.
template <class Draw>
void draw_repeated(const Repetition& repetition, const Window<uint8_t>& window, Draw draw) {
  for (int64_t at = window.first; at < window.end;) {
    const Repetition::Run run = repetition.run_at(at, window.end);
    uint8_t* const out = window.out + (at - window.first);
    if (run.copied && at - repetition.stride >= window.first) {
      std::copy_n(out - repetition.stride, run.end - at, out);
    } else {
      draw(Window<uint8_t>{run.source, run.source + (run.end - at), out});
    }
    at = run.end;
  }
}

}  // namespace lrasynth
