// SPDX-License-Identifier: Apache-2.0
// `sine`: a burst of half-periods as sample codes.
#include <cmath>

#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "tone/ramp.h"
#include "tone/speculation.h"
#include "tone/time_grid.h"

namespace lrasynth {
namespace {

// Unlike the sine segment: single-precision phase, amplitude in sample units, no clip, no forced rest.
class Tone {
 public:
  Tone(Rate rate, int32_t frequency_hz, float cycles, int32_t amplitude)
      : grid_(rate, frequency_hz, cycles),
        angular_(static_cast<float>(frequency_hz) * kTwoPi),
        amplitude_(static_cast<float>(amplitude)) {}

  int32_t count() const { return grid_.count; }

  float exact(int32_t i) const {
    const auto s = static_cast<float>(std::sin(static_cast<double>(phase(i))));
    return amplitude_ * s + kRest;
  }

  void estimate(int32_t first, int32_t n, float* offsets) const {
    for (int32_t j = 0; j < n; ++j) offsets[j] = amplitude_ * fast_sine(phase(first + j)) + kRest;
  }

  float error(int32_t last) const {
    if (!(std::fabs(phase(last)) <= kFastSineLimit)) return kUnproven;
    const float amplitude = std::fabs(amplitude_);
    return offset_error(amplitude, amplitude * (kFastSineError + 0x1p-22F));
  }

 private:
  float phase(int32_t i) const { return angular_ * grid_.time(i); }

  TimeGrid grid_;
  float angular_;  // radians per second
  float amplitude_;
};

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int32_t sine(int32_t halfPeriods, int32_t frequencyHz, int32_t amplitude, uint8_t* out) {
  const float cycles = static_cast<float>(halfPeriods) * 0.5F;
  const Tone tone(current_profile().rate, frequencyHz, cycles, amplitude);
  if (refuses(out, tone.count())) return -1;
  if (tone.count() < 1) return 0;
  render<PlainCoding>(tone, Window<uint8_t>{0, tone.count(), out});
  out[0] = kFirstCode;
  return 0;
}
