// Replay of stored bursts, and the widening that is exported with them.
#include "transient/replay.h"

#include "lrasynth.h"
#include "profile/arithmetic.h"

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

using namespace lrasynth;

int32_t transStringDataToInt(const uint8_t* source, int32_t count, int32_t* destination) {
  if (refuses(source, count) || refuses(destination, count)) return -1;
  for (int32_t i = 0; i < count; ++i) destination[i] = source[i];
  return 0;
}
