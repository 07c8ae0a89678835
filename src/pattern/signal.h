// The signal that a request stands for on a chip: samples, or the compact event stream.
#pragma once

#include <cstdint>

#include "lrasynth.h"
#include "pattern/event_stream.h"
#include "pattern/long_signal.h"

namespace lrasynth {

// Why a long signal cannot be drawn, or 0.
inline int32_t refusal_of(const LongSignal& signal) {
  if (signal.has_early_event()) return LRASYNTH_ERROR_EARLY_EVENT;
  return signal.has_early_copy() ? LRASYNTH_ERROR_EARLY_COPY : 0;
}

// Hands the signal to `use` (which takes either kind and returns a number), or returns why there is none. The limit of
// the pattern is left to `use`.
template <class Use>
int64_t use_signal(const Profile& profile, const lrasynth_pattern& pattern, Use use) {
  const bool streams = profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM;
  const int32_t least = streams ? 1 : LRASYNTH_RECORD_LENGTH;  // to be read at all
  if (pattern.records == nullptr && pattern.length >= least) return LRASYNTH_ERROR_NULL_POINTER;
  const Request request(pattern.records, pattern.length);
  if (streams) return use(EventStream(request, pattern.loop_count));
  const LongSignal signal(profile, request, pattern.loop_count, pattern.interval_ms);
  const int32_t refusal = refusal_of(signal);
  return refusal != 0 ? refusal : use(signal);
}

}  // namespace lrasynth
