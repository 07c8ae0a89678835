// SPDX-License-Identifier: Apache-2.0
// Patterns: their faults, their canonical form, their request. Reading JSON has a file of its own.
#include "design/pattern/pattern.h"

#include <algorithm>
#include <cmath>

#include "design/base/length.h"
#include "design/base/motor.h"
#include "design/base/text.h"

namespace design {
namespace {

constexpr bool is_type(int32_t value) { return value == LRASYNTH_CONTINUOUS || value == LRASYNTH_TRANSIENT; }

// Closes the pass, in the events' order or by an event of its own.
void close_pass(std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback,
                Request& request) {
  const auto earlier_end = [&](const Event& a, const Event& b) { return end_ms(a, profile) < end_ms(b, profile); };
  const auto last = std::max_element(events.rbegin(), events.rend(), earlier_end).base() - 1;
  request.last_event = last->number;
  const auto same_kind = [&](const Event& event) { return event.continuous == last->continuous; };
  const bool can_move = std::none_of(last + 1, events.end(), same_kind);
  const auto end = static_cast<int32_t>(std::ceil(end_ms(*last, profile)));
  const bool is_cut = end != end_ms(*last, profile);
  int32_t closing = end;
  while (is_type(closing)) ++closing;
  const bool can_close = playback.limit_ms < 0 || closing <= playback.limit_ms;
  if (can_close && (is_cut || !can_move)) {
    request.closing_ms = closing;
    request.added_ms = closing - end;
    events.push_back({.continuous = true, .start_ms = closing});
    return;
  }
  if (is_cut || !can_move) request.missing_ms = closing;
  if (can_move) {
    std::rotate(last, last + 1, events.end());
  } else if (playback.loops == 1) {
    request.is_open = true;
  } else {
    request.fault = {
        last->number, last->place,
        text("ends last, at %d ms, where passes need a record that closes them: the limit must be at least "
             "%d, not %d",
             end, closing, playback.limit_ms)};
  }
}

}  // namespace

std::string line_of(const Fault& fault, const std::string& file) {
  std::string line = file + ":";
  if (fault.place.line > 0) line += text("%zu:%zu:", fault.place.line, fault.place.column);
  if (fault.event > 0) line += text(" event %d:", fault.event);
  return line + " " + fault.what;
}

void Faults::add(Fault fault) {
  if (++count <= kMostListed) listed.push_back(std::move(fault));
}

std::vector<std::string> Faults::lines(const std::string& file) const {
  std::vector<std::string> lines;
  for (const Fault& fault : listed) lines.push_back(line_of(fault, file));
  if (count > kMostListed)
    lines.push_back(file + ": " + counted(static_cast<int64_t>(count - kMostListed), "more fault"));
  return lines;
}

void add_faults(const std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback,
                Faults& faults) {
  if (is_event_stream(profile)) return;
  for (const Event& event : events) {
    const auto fault = [&](std::string what) { faults.add({event.number, event.place, std::move(what)}); };
    const bool late = playback.limit_ms >= 0 && event.start_ms > playback.limit_ms;
    if (event.continuous && late) fault(text("start: must be at most %d, the limit", playback.limit_ms));
    if (!event.continuous && !has_taps(profile)) fault("type: " + tap_fault(profile));
  }
}

std::string canonical_json(const std::vector<Event>& events) {
  std::string lines;
  for (const Event& event : events) {
    lines += lines.empty() ? "  {" : ",\n  {";
    if (event.continuous) {
      lines += text(R"("type":"continuous","start":%d,"duration":%d,"points":)", event.start_ms, event.duration_ms);
      const char* separator = "[";
      for (const CurvePoint& point : event.points) {
        lines += text("%s[%d,%d,%d]", separator, point.time_ms, point.intensity, point.offset);
        separator = ",";
      }
      lines += "]}";
    } else {
      lines += text(R"("type":"transient","start":%d,"intensity":%d,"level":%d})", event.start_ms, event.intensity,
                    event.level);
    }
  }
  return "{\"events\": [\n" + lines + "\n]}\n";
}

std::array<int32_t, LRASYNTH_RECORD_LENGTH> record_of(const Event& event) {
  std::array<int32_t, LRASYNTH_RECORD_LENGTH> record;
  if (event.continuous) {
    lrasynth_point points[4];
    const auto point_of = [](const CurvePoint& point) {
      return lrasynth_point{point.time_ms, point.intensity, point.offset};
    };
    std::transform(event.points.begin(), event.points.end(), points, point_of);
    lrasynth_put_continuous(record.data(), event.start_ms, event.duration_ms, points);
  } else {
    lrasynth_put_transient(record.data(), event.start_ms, event.intensity, event.level);
  }
  return record;
}

double end_ms(const Event& event, const lrasynth_profile& profile) {
  if (event.continuous) return event.start_ms + event.duration_ms;
  const auto samples = static_cast<double>(tap_length(profile, event.level).samples);
  return event.start_ms + 1000.0 * samples / profile.sample_rate;
}

Request request_of(std::vector<Event> events, const lrasynth_profile& profile, const Playback& playback) {
  Request request;
  if (!is_event_stream(profile) && !events.empty()) close_pass(events, profile, playback, request);
  for (const Event& event : events) {
    const auto record = record_of(event);
    request.integers.insert(request.integers.end(), record.begin(), record.end());
  }
  return request;
}

}  // namespace design
