// SPDX-License-Identifier: Apache-2.0
// The quarter-sine ramp and its export.
#include "tone/ramp.h"

#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"

namespace lrasynth {

// 6000 is a quarter of 24000: a quarter turn in `count` samples at that rate. It does not follow the rate, so that at
// 12000 the ramp runs through half a turn. Divided in double precision, then narrowed.
Ramp::Ramp(int32_t count, float start, float end)
    : angular_(static_cast<float>(6000.0 / count) * kTwoPi), start_(start), rise_(end - start) {}

}  // namespace lrasynth

#ifndef LRASYNTH_NO_BARE_NAMES

using namespace lrasynth;

int32_t getIncreasingStepIntensity(int32_t count, float* out, float start, float end) {
  if (count < 1) return 0;
  if (out == nullptr) return -1;
  const Ramp ramp(count, start, end);
  const float period = current_profile().rate.period();
  for (int32_t i = 0; i < count; ++i) out[i] = ramp.exact(sample_time(period, i));
  return 0;
}

#endif  // LRASYNTH_NO_BARE_NAMES
