// SPDX-License-Identifier: Apache-2.0
// What is wrong with a request, if anything, and where.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "curves/curves.h"
#include "lrasynth.h"
#include "pattern/event_stream.h"
#include "pattern/long_signal.h"
#include "pattern/vibration.h"
#include "profile/profile.h"
#include "profile/sample_code.h"
#include "transient/tap.h"

namespace lrasynth {
namespace {

struct Fault {
  int32_t error;
  int32_t index;
};

constexpr Fault kNoFault = {0, 0};

constexpr int64_t kMostSamples = std::numeric_limits<int32_t>::max();  // of a time within a pass
constexpr int64_t kMostStreamMs = std::numeric_limits<uint16_t>::max();

bool is_stream(const Profile& profile) { return profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM; }

bool is_event(int32_t value) { return value == LRASYNTH_CONTINUOUS || value == LRASYNTH_TRANSIENT; }

// A tap counts in whole milliseconds, as in the length of a pass. In 64 bits, so that nothing wraps.
int64_t end_in_ms(const Profile& profile, const Record& record) {
  const bool continuous = record.type() == LRASYNTH_CONTINUOUS;
  return int64_t{record.start_ms()} + (continuous ? record.duration_ms() : whole_ms_of_tap(profile, record.level()));
}

// Of a record that should begin at an integer, and of its parameters as far as they read as records.
Fault fault_of_layout(const int32_t* records, int32_t length, int32_t at) {
  const bool whole = length - at >= LRASYNTH_RECORD_LENGTH;
  if (!is_event(records[at])) return {whole ? LRASYNTH_ERROR_NO_RECORD : LRASYNTH_ERROR_LENGTH, at};
  if (!whole) return {LRASYNTH_ERROR_INCOMPLETE_RECORD, at};
  for (int32_t i = at + 1; i < at + LRASYNTH_RECORD_LENGTH; ++i) {
    if (is_event(records[i])) return {LRASYNTH_ERROR_READS_AS_RECORD, i};
  }
  return kNoFault;
}

// The faults of a record count their index from its type.

Fault fault_of_times(const Profile& profile, const Record& record, int32_t limit_ms) {
  const bool continuous = record.type() == LRASYNTH_CONTINUOUS;
  if (record.start_ms() < 0) return {LRASYNTH_ERROR_NEGATIVE_TIME, 1};
  if (continuous && record.duration_ms() < 0) return {LRASYNTH_ERROR_NEGATIVE_TIME, 4};
  if (is_stream(profile)) return kNoFault;
  const int64_t start = int64_t{profile.rate.per_ms()} * record.start_ms();
  if (profile.rate.per_ms() * end_in_ms(profile, record) > kMostSamples) return {LRASYNTH_ERROR_HUGE_TIME, 1};
  const bool late = limit_ms >= 0 && start > int64_t{profile.rate.hz} * limit_ms / 1000;
  return continuous && late ? Fault{LRASYNTH_ERROR_LATE_EVENT, 1} : kNoFault;
}

Fault fault_of_tap(const Profile& profile, const Record& record) {
  const int32_t missing = missing_tap(profile, record.level());
  if (missing == LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS) return {missing, 0};
  if (missing == LRASYNTH_ERROR_LEVEL_WITHOUT_TAP) return {missing, 3};
  const int32_t driven = intensity_in_pattern(profile, record.level(), record.intensity());
  return driven < -100 || driven > 100 ? Fault{LRASYNTH_ERROR_FULL_SCALE, 2} : kNoFault;
}

Fault fault_of_curve(const Profile& profile, const Record& record) {
  const Vibration vibration(profile, record);
  for (int32_t point = 0; point < Vibration::kPoints; ++point) {
    if (point > 0 && record.point_ms(point) < record.point_ms(point - 1)) {
      return {LRASYNTH_ERROR_POINTS_BACKWARDS, 5 + 3 * point};
    }
    if (std::fabs(vibration.amplitude(point)) > kFullScale) return {LRASYNTH_ERROR_FULL_SCALE, 6 + 3 * point};
  }
  const int64_t span = int64_t{record.point_ms(3)} - record.point_ms(0);
  return span != record.duration_ms() ? Fault{LRASYNTH_ERROR_POINTS_SPAN, 14} : kNoFault;
}

Fault fault_of_record(const Profile& profile, const Record& record, int32_t limit_ms) {
  const Fault of_times = fault_of_times(profile, record, limit_ms);
  if (of_times.error != 0) return of_times;
  return record.type() == LRASYNTH_CONTINUOUS ? fault_of_curve(profile, record) : fault_of_tap(profile, record);
}

// Of a request whose records are sound each by itself, the times that hang on one another.

Fault fault_of_samples(const Profile& profile, const Request& request, const lrasynth_pattern& pattern) {
  for (int32_t at = 0; at < request.length(); at += LRASYNTH_RECORD_LENGTH) {
    const bool later = end_in_ms(profile, request.record(at)) > end_in_ms(profile, request.last_record());
    if (later) return {LRASYNTH_ERROR_LAST_RECORD, at};
  }
  const bool fits = std::llabs(int64_t{profile.rate.per_ms()} * pattern.interval_ms) <= kMostSamples;
  if (!fits) return {LRASYNTH_ERROR_HUGE_TIME, pattern.length};
  const LongSignal signal(profile, request, pattern.loop_count, pattern.interval_ms);
  return signal.has_early_copy() ? Fault{LRASYNTH_ERROR_EARLY_COPY, pattern.length} : kNoFault;
}

Fault fault_of_stream(const Request& request, int32_t loop_count) {
  int64_t total_ms = 0;
  for (int32_t at = 0, before_ms = 0; at < request.length(); at += LRASYNTH_RECORD_LENGTH) {
    const Record record = request.record(at);
    const int64_t delta_ms = int64_t{record.start_ms()} - before_ms;
    const int32_t duration_ms = record.type() == LRASYNTH_CONTINUOUS ? record.duration_ms() : EventStream::kTransientMs;
    if (delta_ms < 0) return {LRASYNTH_ERROR_STREAM_ORDER, at + 1};
    if (delta_ms > kMostStreamMs) return {LRASYNTH_ERROR_STREAM_TIME, at + 1};
    if (duration_ms > kMostStreamMs) return {LRASYNTH_ERROR_STREAM_TIME, at + 4};
    total_ms += delta_ms + duration_ms;
    before_ms = record.start_ms();
  }
  const bool fits = total_ms <= kMostStreamMs / std::max(1, loop_count);  // a product could overflow
  return fits ? kNoFault : Fault{LRASYNTH_ERROR_STREAM_TIME, request.length()};
}

Fault fault_of(const Profile& profile, const lrasynth_pattern& pattern) {
  if (pattern.records == nullptr && pattern.length > 0) return {LRASYNTH_ERROR_NULL_POINTER, 0};
  if (profile.rate.per_ms() < 1 && !is_stream(profile)) return {LRASYNTH_ERROR_SAMPLE_RATE, 0};
  for (int32_t at = 0; at < pattern.length; at += LRASYNTH_RECORD_LENGTH) {
    const Fault of_layout = fault_of_layout(pattern.records, pattern.length, at);
    if (of_layout.error != 0) return of_layout;
    const Fault of_record = fault_of_record(profile, Record(pattern.records + at), pattern.limit_ms);
    if (of_record.error != 0) return {of_record.error, at + of_record.index};
  }
  const Request request(pattern.records, pattern.length);
  return is_stream(profile) ? fault_of_stream(request, pattern.loop_count)
                            : fault_of_samples(profile, request, pattern);
}

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int32_t lrasynth_pattern_check(const lrasynth_profile* profile, const lrasynth_pattern* pattern, int32_t* index) {
  const bool given = profile != nullptr && pattern != nullptr;
  const Fault fault = given ? fault_of(profile_of(*profile), *pattern) : Fault{LRASYNTH_ERROR_NULL_POINTER, 0};
  if (index != nullptr) *index = fault.index;
  return fault.error;
}
