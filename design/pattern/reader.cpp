// SPDX-License-Identifier: Apache-2.0
// A pattern from its JSON, with every fault and its place.
#include <algorithm>
#include <set>
#include <span>
#include <string_view>

#include "design/base/text.h"
#include "design/pattern/json.h"
#include "design/pattern/pattern.h"

namespace design {
namespace {

using Kind = JsonValue::Kind;

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

// What stands at a place where something else should.
std::string named(const JsonValue& value) {
  if (value.kind == Kind::kList) return "a list";
  if (value.kind == Kind::kObject) return "an object";
  return shown(value.written);
}

// Members of the same name, and those that nobody knows.
template <class Report>
void report_names(const JsonValue& object, const std::vector<std::string>& known, const char* of_what, Report report) {
  std::set<std::string_view> seen;
  for (size_t i = 0; i < object.names.size(); ++i) {
    const std::string& name = object.names[i];
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      report(object.name_places[i], shown(name) + ": is no field of " + of_what + did_you_mean(name, known));
    } else if (!seen.insert(name).second) {
      report(object.name_places[i], shown(name) + ": stands there twice");
    }
  }
}

// Reads one event and notes its faults.
class EventReader {
 public:
  EventReader(const JsonValue& json, int32_t number, Faults& faults) : json_(json), faults_(faults) {
    event_.number = number;
    event_.place = json.place;
  }

  Event read() {
    if (json_.kind != Kind::kObject) {
      fault(json_.place, "must be an object, not " + named(json_));
      return event_;
    }
    if (!read_type()) return event_;
    for (const EventField& field : fields_of(event_)) {
      if (const JsonValue* value = member(field.name)) event_.*field.value = integer(field.name, *value, field);
    }
    if (event_.continuous) read_points();
    std::vector<std::string> known = {"type"};
    for (const EventField& field : fields_of(event_)) known.emplace_back(field.name);
    if (event_.continuous) known.emplace_back("points");
    report_names(json_, known, event_.continuous ? "a vibration" : "a tap",
                 [&](Place place, std::string what) { fault(place, std::move(what)); });
    return event_;
  }

 private:
  void fault(Place place, std::string what) { faults_.add({event_.number, place, std::move(what)}); }

  const JsonValue* member(const char* name) {
    const JsonValue* const value = json_.member(name);
    if (value == nullptr) fault(json_.place, text("%s: is missing", name));
    return value;
  }

  bool read_type() {
    const JsonValue* const type = member("type");
    if (type == nullptr) return false;
    event_.continuous = type->string == "continuous";
    if (event_.continuous || type->string == "transient") return true;
    fault(type->place, "type: must be transient or continuous, not " + named(*type) +
                           did_you_mean(type->string, {"transient", "continuous"}));
    return false;
  }

  template <class Owner>
  int32_t integer(const std::string& name, const JsonValue& value, const Field<Owner>& field) {
    const auto whole = value.kind == Kind::kNumber ? whole_number(value.written) : std::nullopt;
    if (!whole || *whole < field.least || *whole > field.most) {
      fault(value.place, name + ": " + range_fault(field.least, field.most, named(value)));
      return 0;
    }
    if (*whole == LRASYNTH_CONTINUOUS || *whole == LRASYNTH_TRANSIENT) {
      fault(value.place, text("%s: %d would read as the start of an event, take %d", name.c_str(), *whole,
                              *whole == LRASYNTH_CONTINUOUS ? LRASYNTH_CONTINUOUS - 1 : LRASYNTH_TRANSIENT + 1));
    }
    return *whole;
  }

  void read_points() {
    const JsonValue* const points = member("points");
    if (points == nullptr) return;
    if (points->kind != Kind::kList || points->items.size() != event_.points.size()) {
      return fault(points->place, "points: must be a list of four");
    }
    const size_t faults_before = faults_.count;
    for (size_t i = 0; i < event_.points.size(); ++i) read_point(i, points->items[i]);
    if (faults_.count == faults_before) check_times(*points);
  }

  void read_point(size_t i, const JsonValue& point) {
    const std::string name = text("point %zu", i + 1);
    if (point.kind != Kind::kList || point.items.size() != std::size(kPointFields)) {
      return fault(point.place, name + ": must be [time, intensity, offset]");
    }
    for (size_t j = 0; j < std::size(kPointFields); ++j) {
      const Field<CurvePoint>& field = kPointFields[j];
      event_.points[i].*field.value = integer(name + ", " + field.name, point.items[j], field);
    }
  }

  void check_times(const JsonValue& points) {
    for (size_t i = 1; i < event_.points.size(); ++i) {
      const int32_t before_ms = event_.points[i - 1].time_ms;
      const int32_t time_ms = event_.points[i].time_ms;
      if (time_ms >= before_ms) continue;
      fault(points.items[i].items[0].place,
            text("point %zu, time: must be at least %d, the time of point %zu, not %d", i + 1, before_ms, i, time_ms));
    }
    const int32_t span_ms = event_.point_ms(3);
    if (span_ms == event_.duration_ms || event_.duration_ms == 0) return;  // 0: already a fault
    fault(points.place, text("points: times must span the duration, %d ms, not %d ms", event_.duration_ms, span_ms));
  }

  const JsonValue& json_;
  Event event_;
  Faults& faults_;
};

}  // namespace

PatternFile read_pattern(std::string_view json) {
  PatternFile file;
  if (json.size() > kLargestFile) {
    file.faults.add({0, {}, text("must not be larger than %zu bytes", kLargestFile)});
    return file;
  }
  JsonText parsed = read_json(json);
  if (!parsed.root) {
    file.faults.add(std::move(parsed.fault));
    return file;
  }
  const JsonValue& root = *parsed.root;
  const JsonValue* const events = root.member("events");
  if (events == nullptr || events->kind != Kind::kList || events->items.empty()) {
    const Place place = events == nullptr ? root.place : events->place;
    file.faults.add({0, place, "must be an object with events, a list of at least one"});
    return file;
  }
  report_names(root, {"events"}, "a pattern", [&](Place place, std::string what) {
    file.faults.add({0, place, std::move(what)});
  });
  int32_t number = 0;
  for (const JsonValue& entry : events->items) {
    const size_t faults_before = file.faults.count;
    const Event event = EventReader(entry, ++number, file.faults).read();
    if (file.faults.count == faults_before) file.events.push_back(event);
  }
  const auto earlier = [](const Event& a, const Event& b) { return a.start_ms < b.start_ms; };
  std::stable_sort(file.events.begin(), file.events.end(), earlier);
  return file;
}

}  // namespace design
