// Lengths of a long signal and where its passes lie, with their exports.
#include "pattern/layout.h"

#include "lrasynth.h"
#include "pattern/event_stream.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"
#include "transient/short_signal.h"

namespace lrasynth {
namespace {

int32_t end_ms(const Record& record) {
  if (record.type() == kContinuous) return wrapping_add(record.start_ms(), record.duration_ms());
  const int32_t per_ms = samples_per_ms();
  const int32_t whole_ms = per_ms == 0 ? 0 : tap_length(giMotorType, record.level()) / per_ms;
  return wrapping_add(record.start_ms(), whole_ms);
}

int64_t furthest_continuous_end(const Request& request) {
  int64_t furthest = 0;
  for (int32_t i = request.find(kContinuous, 0); i < request.length(); i = request.find(kContinuous, i + 1)) {
    const int64_t start = request.record(i).start_samples();
    const int64_t length = request.record(i).duration_samples();
    if (start >= 0 && length > 0) furthest = std::max(furthest, start + length);
  }
  return furthest;
}

}  // namespace

int32_t pass_length(const Request& request) {
  if (!request.has_record() || !is_event(request.last_record().type())) return 0;
  return std::max(0, wrapping_multiply(samples_per_ms(), end_ms(request.last_record())));
}

Layout layout_of(const Request& request, int32_t loop_count, int32_t interval_ms) {
  const int64_t pass = pass_length(request);
  const int64_t room = std::max(pass, furthest_continuous_end(request));
  if (loop_count < 2 || pass == 0) return {.pass = pass, .room = room, .copies = 0, .stride = 0};
  const int64_t gap = wrapping_multiply(samples_per_ms(), interval_ms);
  return {.pass = pass, .room = room, .copies = int64_t{loop_count} - 1, .stride = pass + gap};
}

}  // namespace lrasynth

int32_t getLongSignalDataLength(int32_t loopCount, int32_t /*intervalMs*/, const int32_t* pattern, int32_t patternLen) {
  if (IC_TYPE == lrasynth::kEventStreamChip) return lrasynth::event_stream_length(loopCount, pattern, patternLen);
  return lrasynth::pass_length(lrasynth::Request(pattern, patternLen));
}

int32_t getLongSignalBufferLength(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, int32_t patternLen) {
  if (IC_TYPE == lrasynth::kEventStreamChip) return lrasynth::event_stream_length(loopCount, pattern, patternLen);
  const lrasynth::Layout layout = lrasynth::layout_of(lrasynth::Request(pattern, patternLen), loopCount, intervalMs);
  return layout.is_servable() ? static_cast<int32_t>(layout.end()) : 0;
}
