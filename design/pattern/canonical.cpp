// SPDX-License-Identifier: Apache-2.0
// Patterns back to JSON, in one form.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/pattern/file.h"
#include "design/pattern/time.h"

namespace design {
namespace {

using Kind = JsonValue::Kind;

// The fields of a file and of all kinds of events in the order in which they are written.
constexpr const char* kFileFields[] = {"version", "name",  "note",     "motor", "chip", "boost",
                                       "tempo",   "loops", "interval", "limit", "flat", "felt"};
constexpr const char* kEventFields[] = {"type",      "start",  "duration", "repeat", "every", "gain",   "felt", "time",
                                        "intensity", "driven", "offset",   "hz",     "level", "points", "note"};

class Writer {
 public:
  // With a profile in the form to hand on.
  explicit Writer(const JsonValue& root, const lrasynth_profile* profile = nullptr)
      : root_(root), profile_(profile), tempo_(tempo_of(root)) {
    const JsonValue* const flat = root.member("flat");
    is_flat_ = flat != nullptr && flat->written == "true";
    is_felt_ = is_felt(root);
  }

  std::string write() {
    lines_ = "{";
    add_fields(root_, kFileFields);
    lines_ += lines_.size() > 1 ? "," : "";
    lines_ += "\"events\": [\n";
    add_events(*root_.member("events"), 1);
    return lines_ + "]}\n";
  }

 private:
  // In the order in which they start.
  void add_events(const JsonValue& events, size_t depth) {
    std::vector<const JsonValue*> sorted;
    for (const JsonValue& event : events.items) sorted.push_back(&event);
    const auto start_ms = [&](const JsonValue* event) { return time_of(*event->member("start"), tempo_).ms; };
    const auto is_earlier = [&](auto* a, auto* b) { return start_ms(a) < start_ms(b); };
    if (!is_flat_) std::stable_sort(sorted.begin(), sorted.end(), is_earlier);
    const bool around = is_felt_;
    for (const JsonValue* const event : sorted) {
      is_felt_ = is_felt(*event);
      lines_ += std::string(2 * depth, ' ') + "{";
      add_fields(*event, kEventFields);
      if (const JsonValue* const inner = event->member("events")) {
        lines_ += ",\"events\":[\n";
        add_events(*inner, depth + 1);
        lines_ += std::string(2 * depth, ' ') + "]";
      }
      lines_ += event == sorted.back() ? "}\n" : "},\n";
      is_felt_ = around;
    }
  }

  // Of a file, a group or an event, which else is as what is around it.
  bool is_felt(const JsonValue& object) const {
    const JsonValue* const felt = object.member("felt");
    return felt == nullptr ? is_felt_ : felt->written == "true";
  }

  template <class Names>
  void add_fields(const JsonValue& object, const Names& names) {
    const char* separator = "";
    for (const char* const name : names) {
      const JsonValue* const value = object.member(name);
      if (value == nullptr) continue;
      lines_ += separator;
      separator = ",";
      if (profile_ != nullptr && add_handed_on(object, name, *value)) continue;
      lines_ += quoted(name) + ":";
      add(*value);
    }
  }

  // What that form says otherwise, if this is such: the strength of a tap as the motor gets it, and the points of a
  // curve from its start on.
  bool add_handed_on(const JsonValue& event, std::string_view name, const JsonValue& value) {
    const JsonValue* const type = event.member("type");
    if (type == nullptr) return false;
    if (type->string == Tap::kType && name == "intensity" && !is_felt_) {
      const int32_t level = whole_number(event.member("level")->written).value_or(0);
      const int32_t intensity = whole_number(value.written).value_or(0);
      lines_ += text("\"driven\":%d", driven_intensity(*profile_, level, intensity));
      return true;
    }
    if (type->string != Curve::kType || name != "points") return false;
    lines_ += "\"points\":[";
    const double first_ms = time_of(time_in(value.items.front()), tempo_).ms;
    for (const JsonValue& point : value.items) {
      const long ms = std::lround(time_of(time_in(point), tempo_).ms - first_ms);
      const bool is_list = point.kind == Kind::kList;
      lines_ += (&point == value.items.data() ? "" : ",") + text(is_list ? "[%ld" : "{\"time\":%ld", ms);
      for (const JsonValue& item : point.items) {
        if (&item == &time_in(point)) continue;
        const auto place = static_cast<size_t>(&item - point.items.data());
        lines_ += "," + (is_list ? "" : quoted(point.names[place]) + ":");
        add(item);
      }
      lines_ += is_list ? "]" : "}";
    }
    lines_ += "]";
    return true;
  }

  static const JsonValue& time_in(const JsonValue& point) {
    return point.kind == Kind::kList ? point.items[0] : *point.member("time");
  }

  void add(const JsonValue& value) {
    if (value.kind == Kind::kString) {
      lines_ += quoted(value.string);
    } else if (value.kind == Kind::kList) {
      lines_ += "[";
      for (const JsonValue& item : value.items) {
        lines_ += &item == value.items.data() ? "" : ",";
        add(item);
      }
      lines_ += "]";
    } else if (value.kind == Kind::kObject) {
      lines_ += "{";
      add_fields(value, kEventFields);
      lines_ += "}";
    } else if (value.kind == Kind::kNumber) {
      add_number(value.written);
    } else {
      lines_ += value.written;
    }
  }

  // A tempo may be written in many ways.
  void add_number(std::string_view written) {
    lines_ += text("%.15g", std::strtod(std::string(written).c_str(), nullptr) + 0.0);
  }

  const JsonValue& root_;
  const lrasynth_profile* profile_;
  double tempo_;
  bool is_flat_ = false;
  bool is_felt_ = false;
  std::string lines_;
};

}  // namespace

// A slash stands outside of strings in comments alone.
bool has_comments(const Source& source) {
  bool in_string = false;
  for (size_t i = 0; i < source.text.size(); ++i) {
    const char c = source.text[i];
    if (in_string && c == '\\') {
      ++i;
    } else if (c == '"') {
      in_string = !in_string;
    } else if (c == '/' && !in_string) {
      return true;
    }
  }
  return false;
}

std::string canonical_json(const Source& source) { return Writer(*source.json.root).write(); }

std::string handed_on_json(const Source& source, const lrasynth_profile& profile) {
  return Writer(*source.json.root, &profile).write();
}

std::string flat_json(const std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback) {
  std::string lines = text(R"({"version":1,"motor":%d,"chip":%d,"boost":%s,)", profile.motor_type, profile.chip_type,
                           profile.boost_flag == 1 ? "true" : "false");
  const auto add = [&](const char* name, int32_t value, int32_t usual) {
    if (value != usual) lines += text(R"("%s":%d,)", name, value);
  };
  add("loops", playback.loops, Playback().loops);
  add("interval", playback.interval_ms, Playback().interval_ms);
  add("limit", playback.limit_ms, Playback().limit_ms);
  lines += R"("flat":true,"events": [)";
  const char* separator = "\n  {";
  const auto add_event = [&](const Event& event) {
    lines += separator + text("\"type\":\"%s\",", event.type()) + event.fields_json() + "}";
    separator = ",\n  {";
  };
  for (const Event& event : events) {
    Event driven = event;
    if (auto* const tap = std::get_if<Tap>(&driven.kind)) tap->felt = Tap::kAsAsked;
    if (event.curve() == nullptr) add_event(driven);
    for (const auto& [since_ms, vibration] : event.curve() == nullptr ? std::vector<CurvePart>() : event.parts()) {
      add_event({.start_ms = event.start_ms + since_ms, .kind = vibration});
    }
  }
  return lines + "\n]}\n";
}

}  // namespace design
