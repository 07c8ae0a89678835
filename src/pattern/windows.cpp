// SPDX-License-Identifier: Apache-2.0
// The exports of long signals with the profile in hand: their lengths and windows.
#include "lrasynth.h"
#include "pattern/signal.h"
#include "tone/window.h"

namespace lrasynth {
namespace {

// As use_signal, with the limit of the pattern, which does not wrap.
template <class Use>
int64_t use_timely_signal(const lrasynth_profile* profile, const lrasynth_pattern* pattern, Use use) {
  if (profile == nullptr || pattern == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  const int64_t limit_samples = int64_t{profile->sample_rate} * pattern->limit_ms / 1000;
  return use_signal(profile_of(*profile), *pattern, pattern->limit_ms < 0 ? kNoLimit : limit_samples, use);
}

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int64_t lrasynth_pattern_length(const lrasynth_profile* profile, const lrasynth_pattern* pattern) {
  return use_timely_signal(profile, pattern, [](const auto& signal) { return signal.length(); });
}

int64_t lrasynth_pattern_read(const lrasynth_profile* profile, const lrasynth_pattern* pattern, int64_t first,
                              uint8_t* out, int64_t count) {
  return use_timely_signal(profile, pattern, [=](const auto& signal) { return read(signal, first, out, count); });
}
