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
constexpr int32_t kMostStreamStrength = std::numeric_limits<uint8_t>::max();

// Whether times are whole samples, and no envelope runs past half a turn: at 12000 it runs through that.
bool plays_at(Rate rate) { return rate.hz >= 12000 && rate.hz == 1000 * rate.per_ms; }

// Of a record that should begin at an integer, and of its parameters as far as they read as records.
Fault fault_of_layout(const Request& request, int32_t at) {
  const bool whole = request.length() - at >= LRASYNTH_RECORD_LENGTH;
  if (!is_event(request.at(at))) return {whole ? LRASYNTH_ERROR_NO_RECORD : LRASYNTH_ERROR_LENGTH, at};
  if (!whole) return {LRASYNTH_ERROR_INCOMPLETE_RECORD, at};
  for (int32_t i = at + 1; i < at + LRASYNTH_RECORD_LENGTH; ++i) {
    if (is_event(request.at(i))) return {LRASYNTH_ERROR_READS_AS_RECORD, i};
  }
  return kNoFault;
}

// The faults of a record count their index from its type.

Fault fault_of_times(const Profile& profile, const Record& record, int32_t limit_ms) {
  const bool continuous = record.type == LRASYNTH_CONTINUOUS;
  if (record.start_ms < 0) return {LRASYNTH_ERROR_NEGATIVE_TIME, 1};
  if (continuous && record.duration_ms < 0) return {LRASYNTH_ERROR_NEGATIVE_TIME, 4};
  if (profile.streams()) return kNoFault;
  const int64_t per_ms = profile.rate.per_ms;
  if (per_ms * end_in_ms(profile, record) > kMostSamples) return {LRASYNTH_ERROR_HUGE_TIME, 1};
  const bool late = per_ms * record.start_ms > limit_in_samples(profile.rate, limit_ms);
  return continuous && late ? Fault{LRASYNTH_ERROR_LATE_EVENT, 1} : kNoFault;
}

Fault fault_of_tap(const Profile& profile, const Record& record) {
  const int32_t missing = missing_tap(profile, record.level);
  if (missing != 0) return {missing, missing == LRASYNTH_ERROR_LEVEL_WITHOUT_TAP ? 3 : 0};
  const int32_t driven = intensity_in_pattern(profile, record.level, record.intensity);
  return driven < -100 || driven > 100 ? Fault{LRASYNTH_ERROR_FULL_SCALE, 2} : kNoFault;
}

Fault fault_of_curve(const Profile& profile, const Record& record) {
  const Vibration vibration = vibration_of(profile, record);
  const lrasynth_point* const points = record.points;
  for (int32_t i = 0; i < kPoints; ++i) {
    if (i > 0 && points[i].ms < points[i - 1].ms) return {LRASYNTH_ERROR_POINTS_BACKWARDS, 5 + 3 * i};
    if (std::fabs(vibration.points[i].amplitude) > kFullScale) return {LRASYNTH_ERROR_FULL_SCALE, 6 + 3 * i};
    const bool clamped = clamped_offset(points[i].offset) != points[i].offset;
    if (clamped && !profile.streams()) return {LRASYNTH_ERROR_OFFSET, 7 + 3 * i};
  }
  const int64_t span = int64_t{points[3].ms} - points[0].ms;
  if (span < record.duration_ms) return {LRASYNTH_ERROR_POINTS_SPAN, 14};
  const bool fits = profile.streams() || profile.rate.per_ms * span <= kMostSamples;
  return fits ? kNoFault : Fault{LRASYNTH_ERROR_HUGE_TIME, 14};
}

Fault fault_of_record(const Profile& profile, const Record& record, int32_t limit_ms) {
  if (const Fault fault = fault_of_times(profile, record, limit_ms); fault.error != 0) return fault;
  return record.type == LRASYNTH_CONTINUOUS ? fault_of_curve(profile, record) : fault_of_tap(profile, record);
}

// Of a request whose records are sound each by itself, the times that hang on one another.

Fault fault_of_samples(const Profile& profile, const Request& request, const lrasynth_pattern& pattern) {
  const int32_t length = request.length();
  for (int32_t at = 0; at < length; at += LRASYNTH_RECORD_LENGTH) {
    const Record last = request.record(length - LRASYNTH_RECORD_LENGTH);
    if (end_in_ms(profile, request.record(at)) > end_in_ms(profile, last)) return {LRASYNTH_ERROR_LAST_RECORD, at};
  }
  const LongSignal signal(profile, request, pattern.loop_count, pattern.interval_ms);
  const bool fits = std::llabs(int64_t{profile.rate.per_ms} * pattern.interval_ms) <= kMostSamples;
  if (signal.repeats() && !fits) return {LRASYNTH_ERROR_HUGE_TIME, length};
  return {signal.refusal(kNoLimit), length};
}

Fault fault_of_stream(const Request& request, int32_t loop_count) {
  int64_t total_ms = 0;
  for (int32_t at = 0, before_ms = 0; at < request.length(); at += LRASYNTH_RECORD_LENGTH) {
    const Record record = request.record(at);
    const int64_t delta_ms = int64_t{record.start_ms} - before_ms;
    const bool continuous = record.type == LRASYNTH_CONTINUOUS;
    const int32_t duration_ms = continuous ? record.duration_ms : EventStream::kTransientMs;
    const int32_t strength = continuous ? record.points[1].intensity : record.intensity;
    if (delta_ms < 0) return {LRASYNTH_ERROR_STREAM_ORDER, at + 1};
    if (delta_ms > kMostStreamMs) return {LRASYNTH_ERROR_STREAM_TIME, at + 1};
    if (duration_ms > kMostStreamMs) return {LRASYNTH_ERROR_STREAM_TIME, at + 4};
    const bool sendable = strength >= 0 && strength <= kMostStreamStrength;
    if (!sendable) return {LRASYNTH_ERROR_STREAM_STRENGTH, at + (continuous ? 9 : 2)};
    total_ms += delta_ms + duration_ms;
    before_ms = record.start_ms;
  }
  const bool fits = total_ms <= kMostStreamMs / std::max(1, loop_count);  // a product could overflow
  if (!fits) return {LRASYNTH_ERROR_STREAM_TIME, request.length()};
  return loop_count < 1 ? Fault{LRASYNTH_ERROR_STREAM_LOOPS, request.length()} : kNoFault;
}

Fault fault_of(const Profile& profile, const lrasynth_pattern& pattern) {
  if (lacks_records(profile, pattern)) return {LRASYNTH_ERROR_NULL_POINTER, 0};
  if (!plays_at(profile.rate) && !profile.streams()) return {LRASYNTH_ERROR_SAMPLE_RATE, 0};
  const Request request(pattern.records, pattern.length);
  if (request.length() != pattern.length) return {LRASYNTH_ERROR_LENGTH, 0};
  for (int32_t at = 0; at < request.length(); at += LRASYNTH_RECORD_LENGTH) {
    if (const Fault fault = fault_of_layout(request, at); fault.error != 0) return fault;
    const Fault fault = fault_of_record(profile, request.record(at), pattern.limit_ms);
    if (fault.error != 0) return {fault.error, at + fault.index};
  }
  return profile.streams() ? fault_of_stream(request, pattern.loop_count) : fault_of_samples(profile, request, pattern);
}

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int32_t lrasynth_pattern_check(const lrasynth_profile* profile, const lrasynth_pattern* pattern, int32_t* index) {
  const bool given = profile != nullptr && pattern != nullptr;
  const Fault fault = given ? fault_of(profile_of(*profile), *pattern) : Fault{LRASYNTH_ERROR_NULL_POINTER, 0};
  if (index != nullptr) *index = fault.error == 0 ? 0 : fault.index;
  return fault.error;
}
