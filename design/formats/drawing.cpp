// SPDX-License-Identifier: Apache-2.0
// Drawings as pattern files.
#include "design/formats/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "design/base/text.h"
#include "design/pattern/file.h"

namespace design {
namespace {

// With which the JSON of taps and points stays smaller than the largest file.
constexpr size_t kMostPoints = 80'000;

// Of all curves together, since rendering takes as long as they last, however they overlap.
constexpr double kMostCurvesMs = 10.0 * kLongestMs;

constexpr double kNear = 1;      // of 100
constexpr double kNearHz = 2.2;  // about a hundredth of a motor's range

// How far a line may go without a point, since amplitudes run straight and gains do not.
constexpr double kFar = 10;
constexpr double kFarHz = 22;

int32_t rounded(double value, int32_t least, int32_t most) {
  return static_cast<int32_t>(std::lround(std::clamp(value, 1.0 * least, 1.0 * most)));
}

// A point as it is drawn, and as it is written.
struct Point {
  DrawnPoint drawn;
  int32_t ms;
  int32_t intensity;
  int32_t place;  // its offset, or its hertz

  explicit Point(const DrawnPoint& point)
      : drawn(point),
        ms(rounded(point.ms, 0, kLongestMs)),
        intensity(rounded(point.intensity, 0, 100)),
        place(has_hz() ? rounded(point.hz, 1, 1000) : rounded(point.offset, -50, 50)) {}

  bool has_hz() const { return drawn.hz > 0; }
  double drawn_place() const { return has_hz() ? drawn.hz : drawn.offset; }
  double near() const { return has_hz() ? kNearHz : kNear; }
  bool is_far(const Point& other) const { return std::abs(place - other.place) > (has_hz() ? kFarHz : kFar); }
  bool is_near(const Point& other) const {
    return std::fabs(drawn.intensity - other.drawn.intensity) <= kNear &&
           std::fabs(drawn_place() - other.drawn_place()) <= near();
  }
};

using Line = std::vector<Point>;

// The parts of a curve that are not rest, without steps where they begin and end.
std::vector<DrawnCurve> sounding(const DrawnCurve& curve) {
  std::vector<DrawnCurve> parts;
  bool is_open = false;
  for (size_t i = 1; i < curve.size(); ++i) {
    const bool is_step = !(curve[i - 1].ms < curve[i].ms);
    const bool is_rest = Point(curve[i - 1]).intensity == 0 && Point(curve[i]).intensity == 0;
    if (!is_open && !is_step && !is_rest) parts.push_back({curve[i - 1]});
    is_open = is_step ? is_open : !is_rest;
    if (is_open) parts.back().push_back(curve[i]);
  }
  for (DrawnCurve& part : parts) {
    while (part.size() > 2 && !(part[part.size() - 2].ms < part.back().ms)) part.pop_back();
  }
  return parts;
}

// Points of ascending whole milliseconds.
Line merged(const DrawnCurve& curve) {
  Line line;
  for (size_t i = 0; i < curve.size();) {
    const Point first(curve[i]);
    while (i + 1 < curve.size() && Point(curve[i + 1]).ms == first.ms) ++i;
    const Point last(curve[i++]);
    const bool has_room = !line.empty() && line.back().ms < first.ms - 1;
    if (has_room && !first.is_near(last)) {
      line.push_back(first);
      --line.back().ms;
    }
    line.push_back(last);
  }
  return line;
}

// The slopes of the lines from a point that pass near to others.
class Cone {
 public:
  bool is_empty() const { return low_ > high_; }
  bool has(double dx, double dy) const { return dy >= low_ * dx && dy <= high_ * dx; }
  void narrow(double dx, double dy, double near) {
    low_ = std::max(low_, (dy - near) / dx);
    high_ = std::min(high_, (dy + near) / dx);
  }

 private:
  double low_ = -1e9;
  double high_ = 1e9;
};

// Without the points that a line between others passes near enough: from each point to the farthest that will do.
Line thinned(const Line& line) {
  constexpr size_t kMostPassed = 100;  // points in a row that will not do, so that time is as the line is long
  Line kept = {line.front()};
  for (size_t at = 0; at + 1 < line.size();) {
    const Point& from = line[at];
    Cone intensity;
    Cone place;
    size_t farthest = at + 1;
    for (size_t i = at + 1; i < line.size() && i <= farthest + kMostPassed; ++i) {
      const int32_t ms = line[i].ms - from.ms;
      const bool will_do = !line[i].is_far(from) && intensity.has(ms, line[i].intensity - from.intensity) &&
                           place.has(ms, line[i].place - from.place);
      if (will_do) farthest = i;
      intensity.narrow(ms, line[i].drawn.intensity - from.intensity, kNear);
      place.narrow(ms, line[i].drawn_place() - from.place, line[i].near());
      if (intensity.is_empty() || place.is_empty()) break;
    }
    at = farthest;
    kept.push_back(line[at]);
  }
  return kept;
}

// As computed times are written, which may be those that read as the start of an event.
std::string start_text(int32_t ms) { return text(reads_as_type(ms) ? "\"%dms\"" : "%d", ms); }

std::string curve_json(const Line& line) {
  std::string json = "{\"type\":\"curve\",\"start\":" + start_text(line.front().ms) + ",\"points\":";
  char separator = '[';
  for (const Point& point : line) {
    const char* const form = point.has_hz() ? R"(%c{"time":%d,"intensity":%d,"hz":%d})" : "%c[%d,%d,%d]";
    json += text(form, separator, point.ms - line.front().ms, point.intensity, point.place);
    separator = ',';
  }
  return json + "]}";
}

class Writer {
 public:
  explicit Writer(Drawing& drawing) : drawing_(drawing) {}

  std::string write() {
    for (const DrawnCurve& curve : drawing_.curves) add(curve);
    drawing_.losses.add("curve", "played over by another", covered());
    for (const DrawnTap& tap : drawing_.taps) add(tap);
    if (events_.size() > kMostEvents) fault(text("has more than %zu events", kMostEvents));
    if (curves_ms_ > kMostCurvesMs) fault(text("has curves of more than %.0f ms all in all", kMostCurvesMs));
    if (points_ > kMostPoints) fault(text("has more than %zu points", kMostPoints));
    if (drawing_.faults.count > 0) return "";
    std::stable_sort(events_.begin(), events_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::string json = "{\"version\":1,\"events\": [";
    for (const auto& [ms, event] : events_) json += (&event == &events_.front().second ? "\n  " : ",\n  ") + event;
    return json + "\n]}\n";
  }

 private:
  void fault(std::string what) { drawing_.fault({}, std::move(what)); }

  bool is_in_time(double ms) {
    const bool fits = ms <= kLongestMs;
    if (!fits) fault(text("goes on until %.10g ms, longer than %d", ms, kLongestMs));
    return fits;
  }

  void add(const DrawnCurve& curve) {
    if (!curve.empty() && !is_in_time(curve.back().ms)) return;
    for (const DrawnCurve& part : sounding(curve)) {
      const Line few = thinned(merged(part));
      if (few.size() < 2) {
        drawing_.losses.add("curve", "left out, shorter than a millisecond");
        continue;
      }
      points_ += few.size();
      events_.emplace_back(few.front().ms, curve_json(few));
      spans_.emplace_back(few.front().ms, few.back().ms);
      curves_ms_ += few.back().ms - few.front().ms;
    }
  }

  // How many curves others begin in. Other players mix them.
  int64_t covered() {
    std::sort(spans_.begin(), spans_.end());
    int64_t count = 0;
    int32_t end_ms = 0;
    for (const auto& [from, to] : spans_) {
      count += from < end_ms ? 1 : 0;
      end_ms = std::max(end_ms, to);
    }
    return count;
  }

  void add(const DrawnTap& tap) {
    if (!is_in_time(tap.ms) || rounded(tap.strength, 0, 100) == 0) return;
    const int32_t ms = rounded(tap.ms, 0, kLongestMs);
    events_.emplace_back(
        ms, R"({"type":"transient","start":)" + start_text(ms) +
                text(R"(,"driven":%d,"level":%d})", rounded(tap.strength, 0, 100), rounded(tap.level, 0, 100)));
  }

  Drawing& drawing_;
  std::vector<std::pair<int32_t, std::string>> events_;
  std::vector<std::pair<int32_t, int32_t>> spans_;  // of curves
  size_t points_ = 0;
  double curves_ms_ = 0;
};

}  // namespace

void Losses::add(const std::string& thing, const std::string& fate, int64_t count) {
  if (count == 0) return;
  for (Kind& kind : kinds_) {
    if (kind.thing == thing && kind.fate == fate) return void(kind.count += count);
  }
  kinds_.push_back({thing, fate, count});
}

std::vector<std::string> Losses::lines() const {
  std::vector<std::string> lines;
  for (const auto& [thing, fate, count] : kinds_) {
    lines.push_back(thing.empty() ? fate : counted(count, thing.c_str()) + (count == 1 ? " is " : " are ") + fate);
  }
  return lines;
}

std::span<const DrawnTap> Drawing::taps_in(double from_ms, double to_ms) const {
  const auto is_before = [](const DrawnTap& tap, double ms) { return tap.ms < ms; };
  const auto first = std::lower_bound(taps.begin(), taps.end(), from_ms, is_before);
  return {first, std::lower_bound(first, taps.end(), to_ms, is_before)};
}

DrawnPoint between(const DrawnPoint& from, const DrawnPoint& to, double ms, const Tuning* tuning) {
  const double share = (ms - from.ms) / (to.ms - from.ms);
  if (tuning == nullptr) {
    return {ms, std::lerp(from.intensity, to.intensity, share), std::lerp(from.offset, to.offset, share)};
  }
  const auto offset_of = [](const DrawnPoint& point) { return rounded(point.offset, -50, 50); };
  const auto amplitude_of = [&](const DrawnPoint& point) { return point.intensity * tuning->full(offset_of(point)); };
  const double hz = std::lerp(tuning->hertz(offset_of(from)), tuning->hertz(offset_of(to)), share);
  const int32_t offset = tuning->nearest(hz);
  const double intensity = std::lerp(amplitude_of(from), amplitude_of(to), share) / tuning->full(offset);
  return {ms, intensity, 1.0 * offset};
}

void hold(DrawnCurve& curve, Losses& losses) {
  int64_t held = 0;
  for (DrawnPoint& point : curve) {
    held += point.intensity > 100 + kNear ? 1 : 0;
    point.intensity = std::min(100.0, point.intensity);
  }
  losses.add("point", "put into curves and held at full strength, of which more plays there", held);
}

DrawnCurve with_points_beside(const DrawnCurve& curve, const std::vector<double>& times_ms, const Tuning* tuning) {
  std::vector<double> edges;
  for (const double ms : times_ms) edges.insert(edges.end(), {ms - kBesideMs, ms, ms + kBesideMs});
  std::sort(edges.begin(), edges.end());
  DrawnCurve points;
  auto edge = edges.begin();
  for (size_t i = 0; i < curve.size(); ++i) {
    while (edge != edges.end() && *edge <= (i == 0 ? curve[i].ms : curve[i - 1].ms)) ++edge;
    for (; i > 0 && edge != edges.end() && *edge < curve[i].ms; ++edge) {
      if (*edge > points.back().ms) points.push_back(between(curve[i - 1], curve[i], *edge, tuning));
    }
    points.push_back(curve[i]);
  }
  return points;
}

DrawnCurve simplified(const DrawnCurve& curve) {
  DrawnCurve few;
  for (const Point& point : thinned(merged(curve))) {
    const double place = point.place;
    few.push_back({1.0 * point.ms, 1.0 * point.intensity, point.has_hz() ? 0 : place, point.has_hz() ? place : 0});
  }
  return few;
}

std::string pattern_json(Drawing& drawing) { return Writer(drawing).write(); }

}  // namespace design
