// SPDX-License-Identifier: Apache-2.0
// Patterns as people write them.
#include "pattern_file.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <span>

#include "text.h"
#include "waveform.h"

namespace command {
namespace {

using Json = nlohmann::ordered_json;

template <class Owner>
struct Field {
  const char* name;
  int32_t Owner::*value;
  int32_t least;
  int32_t most;
};

using EventField = Field<Event>;

constexpr EventField kStart = {"start", &Event::start_ms, 0, kLongestMs};
constexpr EventField kTransientFields[] = {
    kStart, {"intensity", &Event::intensity, 0, 100}, {"level", &Event::level, 0, 100}};
constexpr EventField kContinuousFields[] = {kStart, {"duration", &Event::duration_ms, 1, kLongestMs}};

constexpr Field<CurvePoint> kPointFields[] = {{"time", &CurvePoint::time_ms, 0, kLongestMs},
                                              {"intensity", &CurvePoint::intensity, 0, 100},
                                              {"offset", &CurvePoint::offset, -50, 50}};

std::span<const EventField> fields_of(const Event& event) {
  if (event.continuous) return kContinuousFields;
  return kTransientFields;
}

constexpr bool is_event(int32_t value) { return value == LRASYNTH_CONTINUOUS || value == LRASYNTH_TRANSIENT; }

// Reads one event and notes its faults.
class EventReader {
 public:
  EventReader(const Json& json, int32_t number, std::vector<std::string>& faults) : json_(json), faults_(faults) {
    event_.number = number;
  }

  Event read() {
    if (!json_.is_object()) {
      fault("must be an object");
      return event_;
    }
    const Json type = json_.value("type", Json());
    event_.continuous = type == "continuous";
    if (!event_.continuous && type != "transient") {
      fault("type: must be transient or continuous");
      return event_;
    }
    for (const EventField& field : fields_of(event_)) {
      if (const Json* value = member(field.name)) event_.*field.value = integer(field.name, *value, field);
    }
    if (event_.continuous) read_points();
    refuse_unknown();
    return event_;
  }

 private:
  void fault(const std::string& what) { faults_.push_back(text("event %d: %s", event_.number, what.c_str())); }

  const Json* member(const char* name) {
    const auto found = json_.find(name);
    if (found != json_.end()) return &*found;
    fault(text("%s: is missing", name));
    return nullptr;
  }

  static constexpr double kNoInteger = -1e9;

  // As a double, because that tells even the largest integers of JSON from the allowed ones.
  template <class Owner>
  int32_t integer(const std::string& place, const Json& value, const Field<Owner>& field) {
    const double number = value.is_number_integer() ? value.get<double>() : kNoInteger;
    if (number < field.least || number > field.most) {
      fault(text("%s: must be a whole number from %d to %d", place.c_str(), field.least, field.most));
      return 0;
    }
    const auto whole = static_cast<int32_t>(number);
    if (is_event(whole)) {
      fault(text("%s: %d would read as the start of an event, take %d", place.c_str(), whole,
                 whole == LRASYNTH_CONTINUOUS ? LRASYNTH_CONTINUOUS - 1 : LRASYNTH_TRANSIENT + 1));
    }
    return whole;
  }

  void read_points() {
    const Json* const points = member("points");
    if (points == nullptr) return;
    if (!points->is_array() || points->size() != event_.points.size()) return fault("points: must be a list of four");
    const size_t faults_before = faults_.size();
    for (size_t i = 0; i < event_.points.size(); ++i) read_point(i, (*points)[i]);
    if (faults_.size() == faults_before) check_times();
  }

  void read_point(size_t i, const Json& point) {
    const std::string place = text("point %zu", i + 1);
    if (!point.is_array() || point.size() != std::size(kPointFields)) {
      return fault(place + ": must be [time, intensity, offset]");
    }
    for (size_t j = 0; j < std::size(kPointFields); ++j) {
      const Field<CurvePoint>& field = kPointFields[j];
      event_.points[i].*field.value = integer(place + ", " + field.name, point[j], field);
    }
  }

  void check_times() {
    const auto earlier = [](const CurvePoint& a, const CurvePoint& b) { return a.time_ms < b.time_ms; };
    if (!std::is_sorted(event_.points.begin(), event_.points.end(), earlier)) {
      fault("points: times must not decrease");
    }
    const int32_t span_ms = event_.points.back().time_ms - event_.points.front().time_ms;
    if (span_ms == event_.duration_ms || event_.duration_ms == 0) return;  // 0: already a fault
    fault(text("points: times must span the duration, %d ms, not %d ms", event_.duration_ms, span_ms));
  }

  void refuse_unknown() {
    const auto fields = fields_of(event_);
    for (const auto& [name, value] : json_.items()) {
      if (name == "type" || (event_.continuous && name == "points")) continue;
      const auto is_name = [&name = name](const EventField& field) { return name == field.name; };
      if (std::none_of(fields.begin(), fields.end(), is_name)) fault(name + ": is no field of this type of event");
    }
  }

  const Json& json_;
  Event event_;
  std::vector<std::string>& faults_;
};

// The integers of an event's record after the type.
std::vector<int32_t> record_of(const Event& event) {
  if (!event.continuous) {
    std::vector<int32_t> record = {LRASYNTH_TRANSIENT, event.start_ms, event.intensity, event.level};
    record.resize(LRASYNTH_RECORD_LENGTH);
    return record;
  }
  std::vector<int32_t> record = {LRASYNTH_CONTINUOUS, event.start_ms, 0, 0, event.duration_ms};
  for (const CurvePoint& point : event.points) {
    record.insert(record.end(), {point.time_ms, point.intensity, point.offset});
  }
  return record;
}

void put_last_end_last(std::vector<Event>& events) {
  const auto earlier_end = [](const Event& a, const Event& b) { return a.end_ms() < b.end_ms(); };
  const auto last = std::max_element(events.rbegin(), events.rend(), earlier_end).base() - 1;
  const auto same_kind = [&](const Event& event) { return event.continuous == last->continuous; };
  if (std::none_of(last + 1, events.end(), same_kind)) {
    std::rotate(last, last + 1, events.end());
  } else {
    Event closing;
    closing.continuous = true;
    closing.start_ms = static_cast<int32_t>(std::ceil(last->end_ms()));
    while (is_event(closing.start_ms)) ++closing.start_ms;
    events.push_back(closing);
  }
}

}  // namespace

double Event::end_ms() const {
  return start_ms + (continuous ? duration_ms : 1000.0 * getShortSignalDataLength(level) / SAMPLE_RATE);
}

PatternFile read_pattern(const std::string& json) {
  PatternFile file;
  Json root;
  try {
    root = Json::parse(json);
  } catch (const Json::exception& error) {
    const std::string_view what = error.what();  // "[json.exception...] parse error at line ..."
    file.faults.push_back("is not JSON: " + std::string(what.substr(what.find(' ') + 1)));
    return file;
  }
  if (!root.is_object() || !root.contains("events") || !root["events"].is_array() || root["events"].empty()) {
    file.faults.emplace_back("must be an object with events, a list of at least one");
    return file;
  }
  for (const auto& [name, value] : root.items()) {
    if (name != "events") file.faults.push_back(name + ": is no field of a pattern");
  }
  int32_t number = 0;
  for (const Json& entry : root["events"]) {
    const size_t faults_before = file.faults.size();
    const Event event = EventReader(entry, ++number, file.faults).read();
    if (file.faults.size() == faults_before) file.events.push_back(event);
  }
  const auto earlier = [](const Event& a, const Event& b) { return a.start_ms < b.start_ms; };
  std::stable_sort(file.events.begin(), file.events.end(), earlier);
  return file;
}

std::string canonical_json(const std::vector<Event>& events) {
  std::string lines;
  for (const Event& event : events) {
    Json entry = {{"type", event.continuous ? "continuous" : "transient"}};
    for (const EventField& field : fields_of(event)) entry[field.name] = event.*field.value;
    if (event.continuous) {
      for (const CurvePoint& point : event.points) {
        entry["points"].push_back({point.time_ms, point.intensity, point.offset});
      }
    }
    lines += (lines.empty() ? "  " : ",\n  ") + entry.dump();
  }
  return "{\"events\": [\n" + lines + "\n]}\n";
}

std::vector<int32_t> request_of(std::vector<Event> events) {
  if (IC_TYPE != LRASYNTH_CHIP_EVENT_STREAM) put_last_end_last(events);
  std::vector<int32_t> request;
  for (const Event& event : events) {
    const std::vector<int32_t> record = record_of(event);
    request.insert(request.end(), record.begin(), record.end());
  }
  return request;
}

}  // namespace command
