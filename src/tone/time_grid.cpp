// The time grid of a sine burst and its length's export.
#include "tone/time_grid.h"

#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {
namespace {

// Two quotients, not one by a product.
float step_of(int32_t frequency_hz, float cycles, int32_t count) {
  const float duration = cycles / static_cast<float>(frequency_hz);
  return duration / static_cast<float>(count);
}

}  // namespace

int32_t sine_count(Rate rate, int32_t frequency_hz, float cycles) {
  if (frequency_hz == 0) return 0;
  const float product = rate.single() * cycles;
  return truncate(product / static_cast<float>(frequency_hz));
}

TimeGrid::TimeGrid(Rate rate, int32_t frequency_hz, float cycles)
    : count(sine_count(rate, frequency_hz, cycles)), step(count > 0 ? step_of(frequency_hz, cycles, count) : 0.0F) {}

}  // namespace lrasynth

int32_t get_sine_wave_len(int32_t frequencyHz, float cycles) {
  return lrasynth::sine_count(lrasynth::current_profile().rate, frequencyHz, cycles);
}
