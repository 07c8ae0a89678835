// SPDX-License-Identifier: Apache-2.0
// AHAP: events, and two controls that run beside them. One multiplies the intensity of all haptic events, the other is
// added to the sharpness of continuous ones.
#include "design/formats/ahap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>
#include <span>

#include "design/base/text.h"
#include "design/formats/line.h"
#include "design/formats/members.h"

namespace design {
namespace {

constexpr const char* kElements[] = {"Event", "Parameter", "ParameterCurve"};
constexpr const char* kIntensity = "HapticIntensity";
constexpr const char* kSharpness = "HapticSharpness";
constexpr const char* kTransient = "HapticTransient";
constexpr const char* kContinuous = "HapticContinuous";

struct ControlKind {
  const char* name;
  double least;
  double most;
  double before;  // where nothing controls it
};
enum ControlIndex { kIntensityControl, kSharpnessControl };
constexpr ControlKind kControls[] = {{"HapticIntensityControl", 0, 1, 1}, {"HapticSharpnessControl", -1, 1, 0}};

// What else an event may have, and we cannot say.
struct LostPhase {
  const char* name;
  const char* words;
};
constexpr LostPhase kLostPhases[] = {{"AttackTime", "attack"}, {"DecayTime", "decay"}, {"ReleaseTime", "release time"}};

// With which a drawing of a text of the largest size, whose events each have all points of a control, stays in memory.
constexpr size_t kMostPoints = 1'000'000;

class AhapReader {
 public:
  explicit AhapReader(Drawing& drawing) : drawing_(drawing), members_(drawing) {}

  void read(const JsonValue& root) {
    if (const auto version = members_.number(root, "Version"); version.value_or(1) != 1) {
      drawing_.losses.say("version " + named(*root.member("Version")) + " is read as version 1");
    }
    const JsonValue* const pattern = members_.required_list(root, "Pattern");
    if (pattern == nullptr) return;
    for (const JsonValue& element : pattern->items) read_element(element);
    follow_controls();
    for (const HapticEvent& event : events_) draw(event);
  }

 private:
  struct HapticEvent {
    double ms = 0;
    double length_ms = 0;  // 0: a transient
    double intensity = 1;
    double sharpness = 0.5;
    Place place = {};
  };

  // A curve of a control, or a step, which is one point.
  struct Control {
    size_t kind;
    double at_ms;
    std::vector<ValueLine::Point> points;  // from its time on
  };

  void read_element(const JsonValue& element) {
    if (!members_.is_object(element, "an element of the pattern")) return;
    const char* found = nullptr;
    for (const char* const name : kElements) {
      if (element.member(name) == nullptr) continue;
      if (found != nullptr) {
        return drawing_.fault(element.place, text("has %s and %s, of which an element has one", found, name));
      }
      found = name;
    }
    if (found == nullptr) return drawing_.losses.add("unknown element", "left out");
    const JsonValue* const inner = members_.object(element, found);
    if (inner == nullptr) return;
    if (found == kElements[0]) read_event(*inner);
    if (found == kElements[1]) read_step(*inner);
    if (found == kElements[2]) read_curve(*inner);
  }

  double time_ms(const JsonValue& of) {
    return exact_ms(1000 * std::max(0.0, members_.number(of, "Time").value_or(0)));
  }

  void read_event(const JsonValue& json) {
    const std::string type = members_.word(json, "EventType");
    HapticEvent event = {.ms = time_ms(json), .place = json.place};
    if (const JsonValue* const parameters = members_.list(json, "EventParameters")) {
      for (const JsonValue& parameter : parameters->items) read_parameter(parameter, event);
    }
    const double length_ms = 1000 * members_.number(json, "EventDuration").value_or(0);
    if (type.starts_with("Audio")) return drawing_.losses.add("audio event", "left out");
    if (type != kTransient && type != kContinuous)
      return drawing_.losses.add("event", "left out, being of no known type");
    if (type == kContinuous) {
      if (!(length_ms > 0)) return drawing_.losses.add("continuous event", "left out for want of a duration");
      event.length_ms = length_ms;
    }
    events_.push_back(event);
  }

  void read_parameter(const JsonValue& parameter, HapticEvent& event) {
    if (!members_.is_object(parameter, "a parameter")) return;
    const std::string name = members_.word(parameter, "ParameterID");
    const auto value = members_.number(parameter, "ParameterValue");
    if (!value) return;
    if (name == kIntensity) event.intensity = std::clamp(*value, 0.0, 1.0);
    if (name == kSharpness) event.sharpness = std::clamp(*value, 0.0, 1.0);
    for (const LostPhase& phase : kLostPhases) {
      if (name == phase.name && *value > 0) drawing_.losses.add(phase.words, "left out");
    }
  }

  // Which control it is; nothing, with a note, where it is none of ours.
  std::optional<size_t> control_of(const JsonValue& json) {
    const std::string name = members_.word(json, "ParameterID");
    for (size_t kind = 0; kind < std::size(kControls); ++kind) {
      if (name == kControls[kind].name) return kind;
    }
    drawing_.losses.add("other parameter", "left out");
    return std::nullopt;
  }

  double value_of(const JsonValue& json, size_t kind) {
    const ControlKind& control = kControls[kind];
    return std::clamp(members_.number(json, "ParameterValue").value_or(control.before), control.least, control.most);
  }

  void read_step(const JsonValue& json) {
    const double ms = time_ms(json);
    if (const auto kind = control_of(json)) controls_.push_back({*kind, ms, {{0, value_of(json, *kind)}}});
  }

  void read_curve(const JsonValue& json) {
    const double ms = time_ms(json);
    const auto kind = control_of(json);
    const JsonValue* const points = members_.list(json, "ParameterCurveControlPoints");
    if (!kind || points == nullptr) return;
    Control control = {*kind, ms, {}};
    for (const JsonValue& point : points->items) {
      if (!members_.is_object(point, "a control point")) return;
      control.points.push_back({time_ms(point), value_of(point, *kind)});
    }
    std::stable_sort(control.points.begin(), control.points.end(), [](auto& a, auto& b) { return a.ms < b.ms; });
    if (!control.points.empty()) controls_.push_back(std::move(control));
  }

  // Each control as it runs from the pattern's start on. A curve takes over from the one before it, and holds its last
  // value.
  void follow_controls() {
    std::stable_sort(controls_.begin(), controls_.end(), [](auto& a, auto& b) { return a.at_ms < b.at_ms; });
    std::array<std::set<double>, 2> ends;
    for (Control& control : controls_) {
      correct(control, ends[control.kind]);
      ValueLine& line = lines_[control.kind];
      line.step(exact_ms(control.at_ms + control.points.front().ms), control.points.front().value);
      for (size_t i = 1; i < control.points.size(); ++i) {
        line.to(exact_ms(control.at_ms + control.points[i].ms), control.points[i].value);
      }
      ends[control.kind].insert(control.at_ms + control.points.back().ms);
    }
  }

  // An exporter that cuts long curves counts the times of those that go on from the pattern's start.
  void correct(Control& control, const std::set<double>& ends) {
    constexpr double kSame = 0.001;
    const auto is_here = [&](double ms) { return std::fabs(ms - control.at_ms) < kSame; };
    const auto end = ends.lower_bound(control.at_ms - kSame);
    const bool goes_on = end != ends.end() && is_here(*end);
    if (control.at_ms == 0 || !is_here(control.points.front().ms) || !goes_on) return;
    for (auto& point : control.points) point.ms -= control.at_ms;
    control.points.front().ms = 0;
    drawing_.losses.add("parameter curve", "read as timed from the pattern's start");
  }

  void draw(const HapticEvent& event) {
    const ValueLine& control = lines_[kIntensityControl];
    if (event.length_ms == 0) {
      const double strength = 100 * event.intensity * control.right(event.ms);
      return drawing_.taps.push_back({event.ms, strength, 100 * event.sharpness});
    }
    if (point_count_ > kMostPoints) return;
    const double end_ms = exact_ms(event.ms + event.length_ms);
    const ValueLine sharpness = lines_[kSharpnessControl].part(event.ms, end_ms, 1, event.sharpness);
    DrawnCurve curve = curve_of(control.part(event.ms, end_ms, event.intensity, 0), sharpness, event.ms, end_ms);
    point_count_ += curve.size();
    if (point_count_ > kMostPoints) return drawing_.fault(event.place, "has too many points with those before it");
    drawing_.curves.push_back(std::move(curve));
  }

  Drawing& drawing_;
  MemberReader members_;
  std::vector<HapticEvent> events_;
  std::vector<Control> controls_;
  std::array<ValueLine, 2> lines_ = {ValueLine(kControls[0].before), ValueLine(kControls[1].before)};
  size_t point_count_ = 0;
};

std::string number(double value) { return text("%.6g", value + 0.0); }
std::string seconds(double ms) { return text("%.10g", ms / 1000); }

std::string parameter_json(const char* name, double value) {
  return text(R"({"ParameterID":"%s","ParameterValue":)", name) + number(value) + "}";
}

std::string event_json(const char* type, double ms, const std::string& duration, double intensity, double sharpness) {
  return text(R"({"Event":{"Time":%s,"EventType":"%s",)", seconds(ms).c_str(), type) + duration +
         R"("EventParameters":[)" + parameter_json(kIntensity, intensity) + "," +
         parameter_json(kSharpness, sharpness) + "]}}";
}

double strongest_of(const DrawnCurve& curve) {
  double strongest = 0;
  for (const DrawnPoint& point : curve) strongest = std::max(strongest, point.intensity);
  return strongest;
}

class AhapWriter {
 public:
  AhapWriter(const Drawing& drawing, Losses& losses) : drawing_(drawing), losses_(losses) {}

  std::string write() {
    for (size_t i = 0; i < drawing_.curves.size(); ++i) {
      const bool is_last = i + 1 == drawing_.curves.size();
      add_curve(drawing_.curves[i], is_last ? HUGE_VAL : drawing_.curves[i + 1].front().ms);
    }
    for (const DrawnTap& tap : drawing_.taps) {
      const double control = control_.right(tap.ms);
      const double intensity = control > 0 ? std::min(1.0, tap.strength / 100 / control) : 0;
      add(event_json(kTransient, tap.ms, "", intensity, tap.level / 100));
    }
    return "{\"Version\":1,\"Pattern\": [" + elements_ + "\n]}\n";
  }

 private:
  void add(const std::string& element) { elements_ += (elements_.empty() ? "\n  " : ",\n  ") + element; }

  // The control runs up to 1 where the curve is strongest, since it holds for taps in the curve, too.
  void add_curve(const DrawnCurve& drawn, double next_ms) {
    if (!(strongest_of(drawn) > 0)) return;
    const double from_ms = drawn.front().ms;
    const double to_ms = drawn.back().ms;
    std::vector<double> times_ms;
    for (const ValueLine::Point& peak : peaks_in(drawn)) times_ms.push_back(peak.ms);
    DrawnCurve curve = with_points_beside(drawn, times_ms, drawing_.tuning);
    hold(curve, losses_);
    const double most = strongest_of(curve);
    const std::vector<ValueLine::Point> peaks = peaks_in(curve);
    losses_.add("tap", "stronger than the curve there, which peaks for a millisecond",
                static_cast<int64_t>(peaks.size()));
    ValueLine strength(0);
    ValueLine sharpness(0);
    for (const DrawnPoint& point : curve) {
      strength.to(point.ms, point.intensity / most);
      sharpness.to(point.ms, sharpness_of_offset(point.offset) - 0.5);
    }
    add(event_json(kContinuous, from_ms, "\"EventDuration\":" + seconds(to_ms - from_ms) + ",", most / 100, 0.5));
    add_control(kIntensityControl, with_peaks(strength, peaks));
    add_control(kSharpnessControl, sharpness.points());
    if (drawing_.taps_in(to_ms, next_ms).empty()) return;
    control_.step(to_ms, 1);
    add(R"({"Parameter":{"Time":)" + seconds(to_ms) + "," +
        parameter_json(kControls[kIntensityControl].name, 1).substr(1) + "}");
  }

  // Where taps are stronger than the control lets them be.
  std::vector<ValueLine::Point> peaks_in(const DrawnCurve& curve) {
    ValueLine control(0);
    const double most = strongest_of(curve);
    for (const DrawnPoint& point : curve) control.to(point.ms, point.intensity / most);
    std::vector<ValueLine::Point> peaks;
    for (const DrawnTap& tap : drawing_.taps_in(curve.front().ms, curve.back().ms)) {
      if (tap.strength / 100 > control.right(tap.ms) + 0.005) peaks.push_back({tap.ms, tap.strength / 100});
    }
    return peaks;
  }

  // In curves of so many points as players take.
  void add_control(ControlIndex kind, const std::vector<ValueLine::Point>& points) {
    constexpr size_t kMost = 16;
    for (size_t first = 0; first + 1 < points.size(); first += kMost - 1) {
      const double at_ms = points[first].ms;
      std::string list;
      for (size_t i = first; i < std::min(points.size(), first + kMost); ++i) {
        list += (list.empty() ? R"({"Time":)" : R"(,{"Time":)") + seconds(points[i].ms - at_ms) +
                ",\"ParameterValue\":" + number(points[i].value) + "}";
      }
      add(text(R"({"ParameterCurve":{"ParameterID":"%s","Time":)", kControls[kind].name) + seconds(at_ms) +
          R"(,"ParameterCurveControlPoints":[)" + list + "]}}");
    }
    if (kind != kIntensityControl) return;
    control_.step(points.front().ms, points.front().value);
    for (const ValueLine::Point& point : points) control_.to(point.ms, point.value);
  }

  const Drawing& drawing_;
  Losses& losses_;
  ValueLine control_{kControls[kIntensityControl].before};
  std::string elements_;
};

}  // namespace

bool is_ahap(const JsonValue& root) { return root.member("Pattern") != nullptr || root.member("Version") != nullptr; }

void read_ahap(const JsonValue& root, Drawing& drawing) { AhapReader(drawing).read(root); }

std::string write_ahap(const Drawing& drawing, Losses& losses) { return AhapWriter(drawing, losses).write(); }

}  // namespace design
