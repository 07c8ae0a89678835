// SPDX-License-Identifier: Apache-2.0
// The records of a request, and how they end a pass.
#include "design/pattern/request.h"

#include <algorithm>
#include <cmath>

#include "design/base/motor.h"
#include "design/base/text.h"

namespace design {
namespace {

// Closes the pass, in the events' order or by an event of its own.
void close_pass(std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback,
                Request& request) {
  const auto earlier_end = [&](const Event& a, const Event& b) { return a.end_ms(profile) < b.end_ms(profile); };
  const auto last = std::max_element(events.rbegin(), events.rend(), earlier_end).base() - 1;
  request.last_event = static_cast<size_t>(last - events.begin());
  const auto is_beside = [&](const Event& event) { return in_one_layer(event, *last); };
  const bool can_move = std::none_of(last + 1, events.end(), is_beside);
  const auto end = static_cast<int32_t>(std::ceil(last->end_ms(profile)));
  const bool is_cut = end != last->end_ms(profile);
  int32_t closing = end;
  while (reads_as_type(closing)) ++closing;
  const bool can_close = playback.limit_ms < 0 || closing <= playback.limit_ms;
  if (can_close && (is_cut || !can_move)) {
    request.closing_ms = closing;
    request.added_ms = closing - end;
    events.push_back({.start_ms = closing, .kind = Vibration()});
    return;
  }
  if (is_cut || !can_move) request.missing_ms = closing;
  if (can_move) {
    std::rotate(last, last + 1, events.end());
  } else if (playback.loops == 1) {
    request.is_open = true;
  } else {
    request.fault = {
        last->name, last->place,
        text("ends last, at %d ms, where passes need a record that closes them: the limit must be at least "
             "%d, not %d",
             end, closing, playback.limit_ms)};
  }
}

// In the library's words, with what it is about.
std::string wording_of(int32_t error, const lrasynth_profile& profile, const Playback& playback, int32_t strength) {
  const std::string what = lrasynth_error_text(error);
  if (error == LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS) return what + text(": motor %d", profile.motor_type);
  if (error == LRASYNTH_ERROR_STREAM_STRENGTH) return what + text(": %d, more than 255", strength);
  return error == LRASYNTH_ERROR_LATE_EVENT ? what + text(": %d ms", playback.limit_ms) : what;
}

// As it stands in a file.
std::string field_at(int32_t index) {
  constexpr int32_t kPoints = 5;
  static constexpr const char* kFields[] = {"type", "start", "intensity", "level", "duration"};
  static constexpr const char* kPointFields[] = {"time", "intensity", "offset"};
  if (index < kPoints) return kFields[index];
  return text("point %d, ", (index - kPoints) / 3 + 1) + kPointFields[(index - kPoints) % 3];
}

}  // namespace

// Times beyond the 16 bits of an event stream are warned of.
void add_faults(const std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback,
                Faults& faults) {
  for (const Event& event : events) {
    for (const Record& record : event.records()) {
      const lrasynth_pattern alone = {record.data(), LRASYNTH_RECORD_LENGTH, 1, 0, playback.limit_ms};
      int32_t index = 0;
      const int32_t error = lrasynth_pattern_check(&profile, &alone, &index);
      if (error == 0 || error == LRASYNTH_ERROR_STREAM_TIME) continue;
      const bool is_driven = index == 2 && event.tap() != nullptr && event.tap()->driven != Tap::kAsAsked;
      const std::string where = record[1] == event.start_ms ? "" : text(", in its record at %d ms", record[1]);
      faults.add({event.name, event.place,
                  (is_driven ? "driven" : field_at(index)) + ": " +
                      wording_of(error, profile, playback, event.sent_strength()) + where});
      break;
    }
  }
}

Request request_of(std::vector<Event> events, const lrasynth_profile& profile, const Playback& playback) {
  Request request;
  if (!is_event_stream(profile) && !events.empty()) close_pass(events, profile, playback, request);
  for (const Event& event : events) {
    for (const Record& record : event.records()) {
      request.integers.insert(request.integers.end(), record.begin(), record.end());
    }
  }
  return request;
}

std::string c_array(const Request& request) {
  std::string lines = text("static const int32_t pattern[%zu] = {", request.integers.size());
  for (size_t i = 0; i < request.integers.size(); ++i) {
    lines += text("%s%d,", i % LRASYNTH_RECORD_LENGTH == 0 ? "\n    " : " ", request.integers[i]);
  }
  return lines + "\n};\n";
}

}  // namespace design
