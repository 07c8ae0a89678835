// SPDX-License-Identifier: Apache-2.0
// Replay of stored bursts.
#include "transient/replay.h"

namespace lrasynth {

void Replay::draw(const Window<uint8_t>& window) const {
  const Window<uint8_t> inside = window.of_piece(0, length());
  const Scaling scaling(intensity);
  const uint8_t* const stored = burst.data() + inside.first;
  uint8_t* const out = inside.out;
  const int64_t n = inside.end - inside.first;
  if (intensity >= 0 && intensity <= 100) {
    for (int64_t i = 0; i < n; ++i) out[i] = scaling.nominal(stored[i]);
  } else {
    for (int64_t i = 0; i < n; ++i) out[i] = scaling.exact(stored[i]);
  }
}

}  // namespace lrasynth
