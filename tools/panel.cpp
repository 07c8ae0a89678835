// SPDX-License-Identifier: Apache-2.0
// A grid with a curve in it.
#include "panel.h"

#include <algorithm>
#include <cmath>

#include "text.h"

namespace command {
namespace {

std::vector<double> ticks(const Axis& axis) {
  std::vector<double> values;
  for (double i = std::ceil(axis.from / axis.step); i * axis.step <= axis.to; ++i) values.push_back(i * axis.step);
  return values;
}

// The samples to draw: all, or of every column its extremes in the order in which they occur.
std::vector<size_t> drawn_samples(const std::vector<uint8_t>& codes, size_t columns) {
  std::vector<size_t> samples;
  if (codes.size() <= 2 * columns) columns = codes.size();
  const auto lower = [](uint8_t a, uint8_t b) { return amplitude(a) < amplitude(b); };
  const uint8_t* const data = codes.data();
  for (size_t column = 0; column < columns; ++column) {
    const uint8_t* const first = data + codes.size() * column / columns;
    const uint8_t* const last = data + codes.size() * (column + 1) / columns;
    const auto [low, high] = std::minmax_element(first, last, lower);
    samples.push_back(static_cast<size_t>(std::min(low, high) - data));
    if (low != high) samples.push_back(static_cast<size_t>(std::max(low, high) - data));
  }
  return samples;
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

Axis time_axis(double length_ms, double width) {
  constexpr double kPixelsPerTick = 70;
  return {0, length_ms, tick_step(length_ms, width / kPixelsPerTick)};
}

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
    picture.label({panel.at(value, 0).x, panel.box.bottom() + 17}, kMiddle, "", text("%g", value));
  }
  picture.label({panel.box.right(), panel.box.bottom() + 36}, kEnd, "", quantity);
}

void label_y(Svg& picture, const Panel& panel) {
  for (const double value : ticks(panel.y)) {
    picture.label({panel.box.x - 8, panel.at(0, value).y + 4}, kEnd, "", text("%g", value));
  }
}

void draw_waveform(Svg& picture, const Panel& panel, const Waveform& waveform) {
  const auto columns = static_cast<size_t>(2 * panel.box.width);
  std::vector<Point> points;
  for (const size_t i : drawn_samples(waveform.codes, columns)) {
    points.push_back(panel.at(waveform.ms_of(i), amplitude(waveform.codes[i])));
  }
  if (points.empty()) return;
  picture.path(points, points.size() == waveform.codes.size() ? "curve shaded" : "dense");
}

}  // namespace command
