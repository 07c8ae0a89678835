// The time grid of a sine burst and its length's export.
#include "tone/time_grid.h"

#include <algorithm>

#include "profile/arithmetic.h"
#include "profile/profile.h"

namespace lrasynth {

int32_t sine_count(int32_t frequency_hz, float cycles) {
  if (frequency_hz == 0) return 0;
  const float product = sample_rate() * cycles;
  return std::max(0, truncate(product / static_cast<float>(frequency_hz)));
}

// Two quotients, not one by a product.
TimeGrid::TimeGrid(int32_t frequency_hz, float cycles) : count(sine_count(frequency_hz, cycles)) {
  if (count == 0) return;
  const float duration = cycles / static_cast<float>(frequency_hz);
  step = duration / static_cast<float>(count);
}

}  // namespace lrasynth

int32_t get_sine_wave_len(int32_t frequencyHz, float cycles) { return lrasynth::sine_count(frequencyHz, cycles); }
