// SPDX-License-Identifier: Apache-2.0
// A pattern from its JSON, with every fault and its place, and back.
#include "design/pattern/file.h"

#include <algorithm>
#include <set>
#include <variant>

#include "design/base/text.h"
#include "design/pattern/json.h"

namespace design {
namespace {

using JsonKind = JsonValue::Kind;

constexpr Field<Event> kStart = {"start", &Event::start_ms, 0, kLongestMs};

// What stands at a place where something else should.
std::string named(const JsonValue& value) {
  if (value.kind == JsonKind::kList) return "a list";
  if (value.kind == JsonKind::kObject) return "an object";
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
    if (json_.kind != JsonKind::kObject) {
      fault(json_.place, "must be an object, not " + named(json_));
      return event_;
    }
    const JsonValue* const type = member("type");
    if (type != nullptr && !read_kind(type->string, AnyKind())) {
      const std::vector<std::string> known = {Tap::kType, Vibration::kType};
      fault(type->place,
            "type: must be " + listed(known) + ", not " + named(*type) + did_you_mean(type->string, known));
    }
    return event_;
  }

 private:
  void fault(Place place, std::string what) { faults_.add({event_.number, place, std::move(what)}); }

  const JsonValue* member(const char* name) {
    const JsonValue* const value = json_.member(name);
    if (value == nullptr) fault(json_.place, text("%s: is missing", name));
    return value;
  }

  // The kind of that name, if there is one.
  template <class... Kinds>
  bool read_kind(std::string_view type, const std::variant<Kinds...>&) {
    return ((type == Kinds::kType && read_fields(Kinds())) || ...);
  }

  template <class Kind>
  bool read_fields(Kind kind) {
    std::vector<std::string> known = {"type"};
    read_field(event_, kStart, known);
    for (const Field<Kind>& field : Kind::fields()) read_field(kind, field, known);
    read_rest(kind, known);
    report_names(json_, known, Kind::kName, [&](Place place, std::string what) { fault(place, std::move(what)); });
    event_.kind = kind;
    return true;
  }

  template <class Owner>
  void read_field(Owner& owner, const Field<Owner>& field, std::vector<std::string>& known) {
    known.emplace_back(field.name);
    if (const JsonValue* value = member(field.name)) owner.*field.value = integer(field.name, *value, field);
  }

  void read_rest(Tap&, std::vector<std::string>&) {}

  void read_rest(Vibration& vibration, std::vector<std::string>& known) {
    known.emplace_back("points");
    if (const JsonValue* points = member("points")) read_points(vibration, *points);
  }

  template <class Owner>
  int32_t integer(const std::string& name, const JsonValue& value, const Field<Owner>& field) {
    const auto whole = value.kind == JsonKind::kNumber ? whole_number(value.written) : std::nullopt;
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

  void read_points(Vibration& vibration, const JsonValue& points) {
    if (points.kind != JsonKind::kList || points.items.size() != vibration.points.size()) {
      return fault(points.place, "points: must be a list of four");
    }
    const size_t faults_before = faults_.count;
    for (size_t i = 0; i < vibration.points.size(); ++i) read_point(vibration.points[i], i, points.items[i]);
    if (faults_.count == faults_before) check_times(vibration, points);
  }

  void read_point(lrasynth_point& point, size_t i, const JsonValue& json) {
    const std::string name = text("point %zu", i + 1);
    const auto fields = Vibration::point_fields();
    if (json.kind != JsonKind::kList || json.items.size() != fields.size()) {
      return fault(json.place, name + ": must be [time, intensity, offset]");
    }
    for (size_t j = 0; j < fields.size(); ++j) {
      point.*fields[j].value = integer(name + ", " + fields[j].name, json.items[j], fields[j]);
    }
  }

  void check_times(const Vibration& vibration, const JsonValue& points) {
    for (size_t i = 1; i < vibration.points.size(); ++i) {
      const int32_t before_ms = vibration.points[i - 1].ms;
      const int32_t time_ms = vibration.points[i].ms;
      if (time_ms >= before_ms) continue;
      fault(points.items[i].items[0].place,
            text("point %zu, time: must be at least %d, the time of point %zu, not %d", i + 1, before_ms, i, time_ms));
    }
    const int32_t span_ms = vibration.point_ms(3);
    if (span_ms == vibration.duration_ms || vibration.duration_ms == 0) return;  // 0: already a fault
    fault(points.place, text("points: times must span the duration, %d ms, not %d ms", vibration.duration_ms, span_ms));
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
  report_names(root, {"events"}, "a pattern", [&](Place place, std::string what) {
    file.faults.add({0, place, std::move(what)});
  });
  if (events == nullptr || events->kind != JsonKind::kList || events->items.empty()) {
    const Place place = events == nullptr ? root.place : events->place;
    file.faults.add({0, place, "must be an object with events, a list of at least one"});
    return file;
  }
  int32_t number = 0;
  for (const JsonValue& entry : events->items) {
    const size_t faults_before = file.faults.count;
    const Event event = EventReader(entry, ++number, file.faults).read();
    if (file.faults.count == faults_before) file.events.push_back(event);
  }
  std::stable_sort(file.events.begin(), file.events.end(), starts_before);
  return file;
}

std::string canonical_json(const std::vector<Event>& events) {
  std::string lines;
  for (const Event& event : events) {
    lines += (lines.empty() ? "  {" : ",\n  {") + text("\"type\":\"%s\",", event.type()) + event.fields_json() + "}";
  }
  return "{\"events\": [\n" + lines + "\n]}\n";
}

}  // namespace design
