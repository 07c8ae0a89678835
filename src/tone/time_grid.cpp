// SPDX-License-Identifier: Apache-2.0
// The time grid of a sine burst and its length's export.
#include "tone/time_grid.h"

#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {

int32_t sine_count(Rate rate, int32_t frequency_hz, float cycles) {
  if (frequency_hz == 0) return 0;
  const float product = rate.single() * cycles;
  return truncate(product / static_cast<float>(frequency_hz));
}

// Two quotients, not one by a product.
TimeGrid::TimeGrid(Rate rate, int32_t frequency_hz, float cycles) : count(sine_count(rate, frequency_hz, cycles)) {
  if (count < 1) return;
  const float duration = cycles / static_cast<float>(frequency_hz);
  step = duration / static_cast<float>(count);
}

}  // namespace lrasynth

using namespace lrasynth;

int32_t get_sine_wave_len(int32_t frequencyHz, float cycles) {
  return sine_count(current_profile().rate, frequencyHz, cycles);
}
