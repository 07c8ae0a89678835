// The compact event stream of chip type 11.
#include "pattern/event_stream.h"

#include <algorithm>
#include <limits>

#include "pattern/request.h"
#include "profile/arithmetic.h"
#include "profile/sample_code.h"

namespace lrasynth {
namespace {

constexpr int32_t kHeaderLength = 2;
constexpr int32_t kGroupLength = 6;
constexpr int32_t kTransientMs = 5;  // what a transient counts as

void put_16(int32_t value, uint8_t* out) {
  out[0] = low_byte(value);
  out[1] = low_byte(value >> 8);
}

// Writes the group of the event at `index` and returns its share of the total time.
int32_t write_group(const Request& request, int32_t index, bool first, uint8_t* out) {
  const auto field = [&](int32_t i) { return request.at(int64_t{index} + i); };
  const bool continuous = field(0) == kContinuous;
  const int32_t duration_ms = continuous ? field(4) : kTransientMs;
  // The predecessor is whatever stands one record before, even where no record does.
  const int32_t delta_ms = first ? field(1) : wrapping_subtract(field(1), field(1 - kRecordLength));
  out[0] = 0;
  put_16(delta_ms, out + 1);
  out[3] = low_byte(continuous ? field(9) : field(2));
  put_16(duration_ms, out + 4);
  return wrapping_add(delta_ms, duration_ms);
}

}  // namespace

int32_t event_stream_length(int32_t loop_count, const int32_t* pattern, int32_t pattern_length) {
  if (refuses(pattern, pattern_length)) return 0;
  const int64_t events = pattern_length < 1 ? 0 : std::count_if(pattern, pattern + pattern_length, is_event);
  const int64_t repeated = events * std::max(1, loop_count);
  const int64_t most = (std::numeric_limits<int32_t>::max() - kHeaderLength) / kGroupLength;
  return repeated > most ? 0 : static_cast<int32_t>(kHeaderLength + kGroupLength * repeated);
}

int32_t write_event_stream(int32_t loop_count, const int32_t* pattern, int32_t pattern_length, uint8_t* out) {
  const int32_t length = event_stream_length(loop_count, pattern, pattern_length);
  if (length == 0 || out == nullptr) return -1;
  const Request request(pattern, pattern_length);
  uint8_t* const groups = out + kHeaderLength;
  uint8_t* end = groups;
  int32_t total_ms = 0;
  for (int32_t i = 0; i < request.length(); ++i) {
    if (!is_event(request.at(i))) continue;
    total_ms = wrapping_add(total_ms, write_group(request, i, end == groups, end));
    end += kGroupLength;
  }
  put_16(wrapping_multiply(total_ms, loop_count), out);
  const auto block = end - groups;
  for (int32_t loop = 1; loop < loop_count && block > 0; ++loop) end = std::copy_n(groups, block, end);
  return 0;
}

}  // namespace lrasynth
