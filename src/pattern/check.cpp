// What is wrong with a request, if anything, and where.
#include <cmath>
#include <limits>

#include "curves/intensity.h"
#include "lrasynth.h"
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
  const int64_t start = int64_t{profile.rate.per_ms()} * record.start_ms();
  const int64_t end = profile.rate.per_ms() * end_in_ms(profile, record);
  if (record.start_ms() < 0) return {LRASYNTH_ERROR_NEGATIVE_TIME, 1};
  if (continuous && record.duration_ms() < 0) return {LRASYNTH_ERROR_NEGATIVE_TIME, 4};
  if (end > std::numeric_limits<int32_t>::max()) return {LRASYNTH_ERROR_HUGE_TIME, 1};
  const bool late = limit_ms >= 0 && start > int64_t{profile.rate.hz} * limit_ms / 1000;
  return continuous && late ? Fault{LRASYNTH_ERROR_LATE_EVENT, 1} : kNoFault;
}

Fault fault_of_tap(const Profile& profile, const Record& record) {
  const int32_t driven = intensity_in_pattern(profile.motor, record.level(), record.intensity());
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

// Of a request whose records are sound each by itself.
Fault fault_of_whole(const Profile& profile, const lrasynth_pattern& pattern) {
  const Request request(pattern.records, pattern.length);
  for (int32_t at = 0; at < request.length() && profile.chip_type != LRASYNTH_CHIP_EVENT_STREAM;
       at += LRASYNTH_RECORD_LENGTH) {
    const bool later = end_in_ms(profile, Record(pattern.records + at)) > end_in_ms(profile, request.last_record());
    if (later) return {LRASYNTH_ERROR_LAST_RECORD, at};
  }
  const LongSignal signal(profile, request, pattern.loop_count, pattern.interval_ms);
  return signal.has_early_copy() ? Fault{LRASYNTH_ERROR_EARLY_COPY, pattern.length} : kNoFault;
}

Fault fault_of(const Profile& profile, const lrasynth_pattern& pattern) {
  if (pattern.records == nullptr && pattern.length > 0) return {LRASYNTH_ERROR_NULL_POINTER, 0};
  for (int32_t at = 0; at < pattern.length; at += LRASYNTH_RECORD_LENGTH) {
    const Fault of_layout = fault_of_layout(pattern.records, pattern.length, at);
    if (of_layout.error != 0) return of_layout;
    const Fault of_record = fault_of_record(profile, Record(pattern.records + at), pattern.limit_ms);
    if (of_record.error != 0) return {of_record.error, at + of_record.index};
  }
  return fault_of_whole(profile, pattern);
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
