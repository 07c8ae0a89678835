// SPDX-License-Identifier: Apache-2.0
// .haptic: one envelope of amplitude, one of frequency, and emphases, which are taps, at points of the former.
#include "design/formats/haptic.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "design/base/text.h"
#include "design/formats/line.h"
#include "design/formats/members.h"

namespace design {
namespace {

class HapticReader {
 public:
  explicit HapticReader(Drawing& drawing) : drawing_(drawing), members_(drawing) {}

  void read(const JsonValue& root) {
    if (const JsonValue* const version = members_.object(root, "version")) {
      const auto major = members_.required_number(*version, "major");
      if (major && *major != 1) {
        const JsonValue& written = *version->member("major");
        drawing_.fault(written.place, "major: must be 1, not " + named(written));
      }
    }
    const JsonValue* inner = &root;
    for (const char* const name : {"signals", "continuous", "envelopes"}) {
      inner = members_.required_object(*inner, name);
      if (inner == nullptr) return;
    }
    if (const JsonValue* const frequency = members_.list(*inner, "frequency")) read_envelope(*frequency, "frequency");
    const JsonValue* const amplitude = members_.required_list(*inner, "amplitude");
    if (amplitude == nullptr) return;
    if (amplitude->items.empty()) return drawing_.fault(amplitude->place, "amplitude: has no breakpoint");
    read_envelope(*amplitude, "amplitude");
    const auto& points = amplitude_.points();
    if (drawing_.faults.count > 0 || points.size() < 2) return;
    drawing_.curves.push_back(curve_of(amplitude_, frequency_, points.front().ms, points.back().ms));
  }

 private:
  // From 0 to 1; what is absent or outside is a fault, and 0.
  double share(const JsonValue& of, const char* name) {
    return members_.in_range(members_.required_number(of, name), 0, 1, of, name).value_or(0);
  }

  void read_envelope(const JsonValue& list, const char* name) {
    const bool is_amplitude = name == std::string_view("amplitude");
    ValueLine& line = is_amplitude ? amplitude_ : frequency_;
    double before = 0;
    for (const JsonValue& point : list.items) {
      if (!members_.is_object(point, "a breakpoint")) return;
      const double time =
          members_.in_range(members_.required_number(point, "time"), 0, HUGE_VAL, point, "time").value_or(before);
      if (time < before) {
        const JsonValue& written = *point.member("time");
        drawing_.fault(written.place,
                       text("time: must be at least %.10g, the one before it, not ", before) + named(written));
      }
      before = std::max(before, time);
      const double value = share(point, name);
      // Sharpness is in the middle until a frequency is given, and the first one holds before its time.
      if (!is_amplitude && line.points().empty()) line = ValueLine(value);
      line.to(1000 * before, value);
      if (is_amplitude) read_emphasis(point, 1000 * before, value);
    }
  }

  void read_emphasis(const JsonValue& point, double ms, double amplitude) {
    const JsonValue* const emphasis = members_.object(point, "emphasis");
    if (emphasis == nullptr) return;
    const double strength = share(*emphasis, "amplitude");
    const JsonValue* const written = emphasis->member("amplitude");
    if (strength < amplitude && written != nullptr && drawing_.faults.count == 0) {
      drawing_.fault(written->place,
                     text("amplitude: must be at least its breakpoint's, %g, not ", amplitude) + named(*written));
    }
    drawing_.taps.push_back({ms, 100 * strength, 100 * share(*emphasis, "frequency")});
  }

  Drawing& drawing_;
  MemberReader members_;
  ValueLine amplitude_{0};
  ValueLine frequency_{0.5};
};

std::string number(double value) { return text("%.6g", value + 0.0); }

// All curves as one envelope, which is 0 between them.
class HapticWriter {
 public:
  HapticWriter(const Drawing& drawing, Losses& losses) : drawing_(drawing), losses_(losses) {}

  std::string write() {
    for (const DrawnCurve& curve : drawing_.curves) add(curve);
    if (amplitude_.points().empty()) amplitude_.to(0, 0);
    place_taps();
    std::string amplitudes;
    for (const Breakpoint& point : points_) {
      amplitudes += start_of("amplitude", point.at, amplitudes.empty());
      if (point.tap != nullptr) {
        amplitudes += R"(,"emphasis":{"amplitude":)" + number(point.tap->strength / 100) +
                      ",\"frequency\":" + number(point.tap->level / 100) + "}";
      }
      amplitudes += "}";
    }
    std::string frequencies;
    for (const ValueLine::Point& point : frequency_.points()) {
      frequencies += start_of("frequency", point, frequencies.empty()) + "}";
    }
    if (!frequencies.empty()) frequencies = ",\n  \"frequency\": [" + frequencies + "]";
    return R"({"version":{"major":1,"minor":0,"patch":0},"metadata":{},"signals":{"continuous":{"envelopes":{)"
           "\n  \"amplitude\": [" +
           amplitudes + "]" + frequencies + "\n}}}}\n";
  }

 private:
  struct Breakpoint {
    ValueLine::Point at;
    const DrawnTap* tap = nullptr;
  };

  static std::string start_of(const char* name, const ValueLine::Point& point, bool is_first) {
    return (is_first ? "\n    " : ",\n    ") + text(R"({"time":%.10g,"%s":)", point.ms / 1000, name) +
           number(point.value);
  }

  void add(const DrawnCurve& drawn) {
    const bool goes_on = !amplitude_.points().empty() && amplitude_.points().back().ms == drawn.front().ms;
    if (goes_on) losses_.add("curve", "joined to the one before");
    std::vector<double> times_ms;
    for (const DrawnTap& tap : drawing_.taps_in(drawn.front().ms, drawn.back().ms)) times_ms.push_back(tap.ms);
    DrawnCurve curve = with_points_beside(drawn, times_ms, drawing_.tuning);
    hold(curve, losses_);
    ValueLine strength(0);
    for (const DrawnPoint& point : curve) {
      strength.to(point.ms, point.intensity / 100);
      frequency_.to(point.ms, sharpness_of_offset(point.offset));
    }
    amplitude_.to(drawn.front().ms, 0);
    for (const ValueLine::Point& point : with_peaks(strength, dents_in(curve, strength)))
      amplitude_.to(point.ms, point.value);
    amplitude_.to(drawn.back().ms, 0);
  }

  // Where taps are weaker than a curve, to which their breakpoints have to fall.
  std::vector<ValueLine::Point> dents_in(const DrawnCurve& curve, const ValueLine& strength) {
    std::vector<ValueLine::Point> dents;
    for (const DrawnTap& tap : drawing_.taps_in(curve.front().ms, curve.back().ms)) {
      const bool is_inside = tap.ms > curve.front().ms;
      const bool is_weaker = tap.strength / 100 < std::min(strength.left(tap.ms), strength.right(tap.ms));
      if (is_inside && is_weaker) dents.push_back({tap.ms, tap.strength / 100});
    }
    losses_.add("tap", "weaker than the curve there, which has a dent of a millisecond",
                static_cast<int64_t>(dents.size()));
    return dents;
  }

  void place_taps() {
    auto point = amplitude_.points().begin();
    for (const DrawnTap& tap : drawing_.taps) {
      const ValueLine::Point emphasis = {tap.ms, std::min(amplitude_.left(tap.ms), amplitude_.right(tap.ms))};
      // Behind what lies earlier, and of points of its time behind those from which the envelope falls to it.
      const auto is_earlier = [&](const ValueLine::Point& other) {
        return other.ms < emphasis.ms || (other.ms == emphasis.ms && other.value > emphasis.value);
      };
      for (; point != amplitude_.points().end() && is_earlier(*point); ++point) points_.push_back({*point});
      points_.push_back({emphasis, &tap});
      if (point != amplitude_.points().end() && point->ms == emphasis.ms && point->value == emphasis.value) ++point;
    }
    for (; point != amplitude_.points().end(); ++point) points_.push_back({*point});
  }

  const Drawing& drawing_;
  Losses& losses_;
  ValueLine amplitude_{0};
  ValueLine frequency_{0.5};
  std::vector<Breakpoint> points_;
};

}  // namespace

bool is_haptic(const JsonValue& root) { return root.member("signals") != nullptr; }

void read_haptic(const JsonValue& root, Drawing& drawing) { HapticReader(drawing).read(root); }

std::string write_haptic(const Drawing& drawing, Losses& losses) { return HapticWriter(drawing, losses).write(); }

}  // namespace design
