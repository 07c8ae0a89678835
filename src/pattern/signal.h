// SPDX-License-Identifier: Apache-2.0
// The signal that a request stands for on a chip: samples, or the compact event stream.
#pragma once

#include <cstdint>
#include <limits>

#include "lrasynth.h"
#include "pattern/event_stream.h"
#include "pattern/long_signal.h"

namespace lrasynth {

constexpr int64_t kNoLimit = std::numeric_limits<int64_t>::max();

// Why a long signal cannot be drawn, or 0.
inline int32_t refusal_of(const LongSignal& signal, int64_t limit_samples) {
  if (signal.has_early_event()) return LRASYNTH_ERROR_EARLY_EVENT;
  if (signal.has_early_copy()) return LRASYNTH_ERROR_EARLY_COPY;
  return signal.starts_by(limit_samples) ? 0 : LRASYNTH_ERROR_LATE_EVENT;
}

// Hands the signal to `use` (which takes either kind and returns a number), or returns why there is none. Here the
// limit is in samples; an event stream has none.
template <class Use>
int64_t use_signal(const Profile& profile, const lrasynth_pattern& pattern, int64_t limit_samples, Use use) {
  const bool streams = profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM;
  const int32_t least = streams ? 1 : LRASYNTH_RECORD_LENGTH;  // to be read at all
  if (pattern.records == nullptr && pattern.length >= least) return LRASYNTH_ERROR_NULL_POINTER;
  const Request request(pattern.records, pattern.length);
  if (streams) return use(EventStream(request, pattern.loop_count));
  const LongSignal signal(profile, request, pattern.loop_count, pattern.interval_ms);
  const int32_t refusal = refusal_of(signal, limit_samples);
  return refusal != 0 ? refusal : use(signal);
}

}  // namespace lrasynth
