// Replay of stored bursts, and the widening that is exported with them.
#include "transient/replay.h"

#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {

Replay::Replay(const Motor& motor, int32_t level, int32_t intensity)
    : burst_(motor.bursts.empty() ? Burst() : row_at(motor.bursts, level).burst), intensity_(intensity) {}

void Replay::draw(const Window<uint8_t>& window) const {
  const Scaling scaling(intensity_);
  const uint8_t* const stored = burst_.data() + window.first;
  uint8_t* const out = window.out;
  const int64_t n = window.end - window.first;
  if (intensity_ >= 0 && intensity_ <= 100) {
    for (int64_t i = 0; i < n; ++i) out[i] = scaling.nominal(stored[i]);
  } else {
    for (int64_t i = 0; i < n; ++i) out[i] = scaling.exact(stored[i]);
  }
}

}  // namespace lrasynth

int32_t transStringDataToInt(const uint8_t* source, int32_t count, int32_t* destination) {
  if (lrasynth::refuses(source, count) || lrasynth::refuses(destination, count)) return -1;
  for (int32_t i = 0; i < count; ++i) destination[i] = source[i];
  return 0;
}
