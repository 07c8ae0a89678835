// SPDX-License-Identifier: Apache-2.0
// Straight lines through values, and curves from two of them.
#include "design/formats/line.h"

#include <algorithm>

namespace design {
namespace {

constexpr auto kIsBefore = [](const ValueLine::Point& point, double ms) { return point.ms < ms; };
constexpr auto kIsBehind = [](double ms, const ValueLine::Point& point) { return ms < point.ms; };

// The times from..to, and between them those of points, and of places where a sharpness leaves its range.
std::vector<double> times_of(const ValueLine& intensity, const ValueLine& place, double from_ms, double to_ms,
                             bool is_hz) {
  std::vector<double> times = {from_ms, to_ms};
  const auto add = [&](double ms) {
    if (ms > from_ms && ms < to_ms) times.push_back(ms);
  };
  for (const ValueLine* const line : {&intensity, &place}) {
    const auto& points = line->points();
    auto point = std::upper_bound(points.begin(), points.end(), from_ms, kIsBehind);
    for (; point != points.end() && point->ms < to_ms; ++point) add(point->ms);
  }
  std::sort(times.begin(), times.end());
  times.erase(std::unique(times.begin(), times.end()), times.end());
  for (size_t i = times.size() - 1; i > 0 && !is_hz; --i) {
    const double ms = times[i - 1];
    const double low = place.right(ms);
    const double high = place.left(times[i]);
    for (const double edge : {0.0, 1.0}) {
      if ((low - edge) * (high - edge) < 0) add(ms + (times[i] - ms) * (edge - low) / (high - low));
    }
  }
  std::sort(times.begin(), times.end());
  return times;
}

}  // namespace

void ValueLine::step(double ms, double value) {
  const double before = left(ms);
  while (!points_.empty() && points_.back().ms >= ms) points_.pop_back();
  to(ms, before);
  to(ms, value);
}

double ValueLine::between(size_t next, double ms) const {
  if (next == 0) return before_;
  const Point& from = points_[next - 1];
  if (next == points_.size()) return from.value;
  const Point& to = points_[next];
  return from.value + (to.value - from.value) * ((ms - from.ms) / (to.ms - from.ms));
}

double ValueLine::left(double ms) const {
  const auto next = std::lower_bound(points_.begin(), points_.end(), ms, kIsBefore);
  return between(static_cast<size_t>(next - points_.begin()), ms);
}

double ValueLine::right(double ms) const {
  const auto next = std::upper_bound(points_.begin(), points_.end(), ms, kIsBehind);
  return between(static_cast<size_t>(next - points_.begin()), ms);
}

ValueLine ValueLine::part(double from_ms, double to_ms, double times, double plus) const {
  const auto made = [&](double value) { return times * value + plus; };
  ValueLine line(made(before_));
  line.to(from_ms, made(right(from_ms)));
  auto point = std::upper_bound(points_.begin(), points_.end(), from_ms, kIsBehind);
  for (; point != points_.end() && point->ms < to_ms; ++point) line.to(point->ms, made(point->value));
  line.to(to_ms, made(left(to_ms)));
  return line;
}

std::vector<ValueLine::Point> with_peaks(const ValueLine& line, const std::vector<ValueLine::Point>& peaks) {
  std::vector<ValueLine::Point> points = peaks;
  const auto add_outside = [&](const ValueLine::Point& point) {
    const auto peak = std::upper_bound(peaks.begin(), peaks.end(), point.ms - kBesideMs, kIsBehind);
    if (peak == peaks.end() || peak->ms >= point.ms + kBesideMs) points.push_back(point);
  };
  for (const ValueLine::Point& point : line.points()) add_outside(point);
  for (const ValueLine::Point& peak : peaks) {
    const double before_ms = peak.ms - kBesideMs;
    const double behind_ms = peak.ms + kBesideMs;
    if (before_ms > line.points().front().ms) add_outside({before_ms, line.left(before_ms)});
    if (behind_ms < line.points().back().ms) add_outside({behind_ms, line.right(behind_ms)});
  }
  std::stable_sort(points.begin(), points.end(), [](const auto& a, const auto& b) { return a.ms < b.ms; });
  const auto is_same = [](const auto& a, const auto& b) { return a.ms == b.ms && a.value == b.value; };
  points.erase(std::unique(points.begin(), points.end(), is_same), points.end());
  return points;
}

DrawnCurve curve_of(const ValueLine& intensity, const ValueLine& place, double from_ms, double to_ms, bool is_hz) {
  DrawnCurve curve;
  const auto add = [&](double ms, double strength, double value) {
    DrawnPoint point = {.ms = ms, .intensity = 100 * strength};
    if (is_hz) point.hz = std::max(1.0, value);
    if (!is_hz) point.offset = offset_of_sharpness(std::clamp(value, 0.0, 1.0));
    const bool is_new = curve.empty() || curve.back().ms < ms || curve.back().intensity != point.intensity ||
                        curve.back().offset != point.offset || curve.back().hz != point.hz;
    if (is_new) curve.push_back(point);
  };
  for (const double ms : times_of(intensity, place, from_ms, to_ms, is_hz)) {
    if (ms > from_ms) add(ms, intensity.left(ms), place.left(ms));
    if (ms < to_ms) add(ms, intensity.right(ms), place.right(ms));
  }
  return curve;
}

}  // namespace design
