// One waveform in its axes.
#include "panel.h"

#include <algorithm>
#include <cmath>

#include "text.h"

namespace lrasynth {
namespace {

constexpr int kFullScale = 128;

Scale amplitude_scale(const Box& box) {
  return {.from = -kFullScale, .to = kFullScale, .start = box.bottom(), .end = box.y};
}

// The samples to draw: all, or of every column its extremes in the order in which they occur.
std::vector<size_t> drawn_samples(const std::vector<uint8_t>& codes, size_t columns) {
  std::vector<size_t> samples;
  const bool dense = codes.size() > 2 * columns;
  if (!dense) columns = codes.size();
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

}  // namespace

Scale draw_axes(Svg& picture, const Box& box, double length_ms) {
  const Scale time = {.from = 0, .to = length_ms, .start = box.x, .end = box.right()};
  const Scale height = amplitude_scale(box);
  for (const int level : {-128, -64, 0, 64, 128}) {
    const double y = height(level);
    picture.line({box.x, y}, {box.right(), y}, level == 0 ? "zero" : "grid");
    picture.label({box.x - 8, y + 4}, Anchor::kEnd, "", text("%d", level));
  }
  const double step = tick_step(length_ms, std::max(2.0, box.width / 75));
  for (int i = 0; i * step <= length_ms; ++i) {
    const double x = time(i * step);
    picture.line({x, box.y}, {x, box.bottom()}, "grid");
    picture.label({x, box.bottom() + 17}, Anchor::kMiddle, "", text("%g", i * step));
  }
  picture.rectangle(box, "frame");
  return time;
}

void draw_curve(Svg& picture, const Box& box, const Scale& time, const Waveform& waveform) {
  const Scale height = amplitude_scale(box);
  std::vector<Point> points;
  for (const size_t i : drawn_samples(waveform.codes, static_cast<size_t>(box.width) * 2)) {
    points.push_back({time(waveform.ms_of(i)), height(amplitude(waveform.codes[i]))});
  }
  if (points.empty()) return;
  const bool dense = points.size() < waveform.codes.size();
  picture.path(points, dense ? "dense" : "curve");
  if (dense) return;
  points.insert(points.begin(), {points.front().x, height(0)});
  points.push_back({points.back().x, height(0)});
  picture.path(points, "area");
}

}  // namespace lrasynth
