// SPDX-License-Identifier: Apache-2.0
// A grid with curves in it.
#include "design/picture/panel.h"

#include <algorithm>
#include <cmath>

#include "design/base/text.h"

namespace design {
namespace {

std::vector<double> ticks(const Axis& axis) {
  std::vector<double> values;
  for (double i = std::ceil(axis.from / axis.step); i * axis.step <= axis.to; ++i) values.push_back(i * axis.step);
  return values;
}

// Of every column its extremes in the order in which they occur.
std::vector<Point> extremes(const Panel& panel, const Waveform& waveform, int64_t from, int64_t to, int64_t columns) {
  std::vector<Point> points;
  int64_t column = -1;
  int64_t low_at = 0;
  int64_t high_at = 0;
  int low = 0;
  int high = 0;
  const auto close = [&] {
    if (column < 0) return;
    const Point lowest = panel.at(waveform.ms_of(low_at), low);
    const Point highest = panel.at(waveform.ms_of(high_at), high);
    points.push_back(low_at < high_at ? lowest : highest);
    if (low_at != high_at) points.push_back(low_at < high_at ? highest : lowest);
  };
  for_blocks(waveform, from, to, [&](int64_t first, std::span<const uint8_t> codes) {
    for (size_t i = 0; i < codes.size(); ++i) {
      const int64_t at = first + static_cast<int64_t>(i);
      const int value = amplitude(codes[i]);
      if (const int64_t here = (at - from) * columns / (to - from); here != column) {
        close();
        column = here;
        low_at = high_at = at;
        low = high = value;
      } else if (value < low) {
        low = value;
        low_at = at;
      } else if (value > high) {
        high = value;
        high_at = at;
      }
    }
    return true;
  });
  close();
  return points;
}

// The smallest of 1, 2, 5, 10, 20, ... that divides a range into at most that many steps.
double tick_step(double range, double most_steps) {
  const double least = range / most_steps;
  const double decade = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (decade * factor >= least) return decade * factor;
  }
  return decade * 10.0;
}

}  // namespace

Axis time_axis(Span span_ms, double width) {
  constexpr double kPixelsPerTick = 70;
  constexpr double kManyMs = 10'000;
  return {span_ms.from, span_ms.to, tick_step(span_ms.length(), width / kPixelsPerTick),
          span_ms.to >= kManyMs ? 1000.0 : 1.0};
}

const char* time_words(const Axis& axis) { return axis.unit == 1 ? "time in ms" : "time in s"; }

Point Panel::at(double x_value, double y_value) const {
  return {box.x + (x_value - x.from) / (x.to - x.from) * box.width,
          box.bottom() - (y_value - y.from) / (y.to - y.from) * box.height};
}

void draw_grid(Svg& picture, const Panel& panel) {
  for (const double value : ticks(panel.x))
    picture.line(panel.at(value, panel.y.from), panel.at(value, panel.y.to), "grid");
  for (const double value : ticks(panel.y)) {
    picture.line(panel.at(panel.x.from, value), panel.at(panel.x.to, value), value == 0 ? "zero" : "grid");
  }
  picture.rectangle(panel.box, "frame");
}

void label_x(Svg& picture, const Panel& panel, const std::string& quantity) {
  for (const double value : ticks(panel.x)) {
    picture.label({panel.x_at(value), panel.box.bottom() + 17}, kMiddle, "", text("%.10g", value / panel.x.unit));
  }
  picture.label({panel.box.right(), panel.box.bottom() + 36}, kEnd, "", quantity);
}

void label_y(Svg& picture, const Panel& panel) {
  for (const double value : ticks(panel.y)) {
    picture.label({panel.box.x - 8, panel.at(0, value).y + 4}, kEnd, "", text("%g", value / panel.y.unit));
  }
}

void draw_waveform(Svg& picture, const Panel& panel, const Waveform& waveform) {
  const auto columns = static_cast<int64_t>(2 * panel.box.width);
  const auto inside = [&](int64_t sample) { return std::clamp<int64_t>(sample, 0, waveform.length); };
  const int64_t from = inside(waveform.sample_at(panel.x.from));
  const int64_t to = inside(waveform.sample_at(panel.x.to) + 1);
  if (from >= to) return;
  const bool whole = to - from <= 2 * columns;
  std::vector<Point> points = extremes(panel, waveform, from, to, whole ? to - from : columns);
  for (Point& point : points) point.x = std::max(point.x, panel.box.x);
  picture.path(points, whole ? "curve" : "dense");
  if (!whole) return;
  const double zero = panel.at(0, 0).y;
  points.insert(points.begin(), {points.front().x, zero});
  points.push_back({points.back().x, zero});
  picture.path(points, "shade");
}

void draw_response(Svg& picture, const Panel& panel, const Motion& motion, double full) {
  constexpr double kNothing = 0.002;  // of rest's two codes
  if (full < kNothing) return;
  constexpr double kPixelsPerSwing = 8;  // that can be told apart
  const auto columns = motion.columns(panel.span(), static_cast<size_t>(panel.box.width));
  const double pixels = 1000.0 * panel.box.width / (panel.span().length() * motion.response().resonator.hz);
  const bool dense = pixels < kPixelsPerSwing;
  const auto group = dense ? static_cast<size_t>(std::max(3.0, std::ceil(pixels))) : size_t{1};
  std::vector<Point> outline;
  std::vector<Point> lower;
  for (size_t first = 0; first < columns.size(); first += group) {
    const size_t count = std::min(group, columns.size() - first);
    Motion::Extremes extremes = {};
    for (const Motion::Extremes& column : std::span(columns).subspan(first, count)) extremes.add(column);
    if (extremes.low > extremes.high) continue;
    if (!dense) {
      const double middle = (extremes.low + extremes.high) / 2;
      extremes = {std::min(0.0, middle), std::max(0.0, middle)};
    }
    const double x = panel.box.x + static_cast<double>(first) + static_cast<double>(count) / 2;
    const auto y = [&](double value) { return panel.at(0, value / full * panel.y.to).y; };
    outline.push_back({x, y(extremes.high)});
    lower.push_back({x, y(extremes.low)});
  }
  outline.insert(outline.end(), lower.rbegin(), lower.rend());
  picture.path(outline, "response");
}

Axis felt_axis(double strongest) {
  constexpr double kStep = 10;
  const double top = std::max(kFullyFelt, std::ceil(strongest / kStep) * kStep);
  return {0, top, top > 4 * kStep ? 2 * kStep : kStep};
}

void draw_felt(Svg& picture, const Panel& panel, const Felt& felt) {
  const double step_ms = std::max(kFrameStepMs, panel.span().length() / panel.box.width);
  const double last_ms = kFrameStepMs * static_cast<double>(felt.levels().size() - 1);
  std::vector<Point> outline = {panel.at(panel.x.from, 0)};
  for (double ms = panel.x.from; ms < panel.x.to + step_ms; ms += step_ms) {
    const double at_ms = std::min({ms, panel.x.to, last_ms});
    const double level =
        step_ms > kFrameStepMs ? felt.strongest({at_ms - step_ms / 2, at_ms + step_ms / 2}) : felt.level_at(at_ms);
    outline.push_back(panel.at(at_ms, level));
  }
  outline.push_back({outline.back().x, panel.box.bottom()});
  picture.path(outline, "felt");
  picture.line(panel.at(panel.x.from, kHardlyFelt), panel.at(panel.x.to, kHardlyFelt), "aim");
}

}  // namespace design
