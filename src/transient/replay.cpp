// SPDX-License-Identifier: Apache-2.0
// Replay of stored bursts.
#include "transient/replay.h"

#include <algorithm>

namespace lrasynth {

// A nominal intensity scales with a copy, which the compiler knows not to change with what is written.
void Replay::draw(const Window<uint8_t>& window) const {
  const Window<uint8_t> inside = window.of_piece(0, length());
  if (inside.empty()) return;
  const Scaling scaling(intensity);
  const uint8_t* const stored = burst.data() + inside.first;
  uint8_t* const out = inside.out;
  const int64_t n = inside.end - inside.first;
  if (intensity >= 0 && intensity <= 100) {
    std::transform(stored, stored + n, out, [scaling](uint8_t sample) { return scaling.nominal(sample); });
  } else {
    std::transform(stored, stored + n, out, [&scaling](uint8_t sample) { return scaling.exact(sample); });
  }
}

}  // namespace lrasynth
