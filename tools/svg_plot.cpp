// The SVG form: one waveform over time.
#include "output.h"
#include "panel.h"

namespace lrasynth {
namespace {

constexpr Box kPanel = {.x = 60, .y = 78, .width = 880, .height = 290};
constexpr double kWidth = 960;
constexpr double kHeight = 424;

void draw_bands(Svg& picture, const Waveform& waveform, const Scale& time) {
  bool shaded = true;
  for (const Span& section : waveform.sections) {
    const double start = time(section.start_ms);
    const double end = time(section.end_ms);
    if (shaded) picture.rectangle({.x = start, .y = kPanel.y, .width = end - start, .height = kPanel.height}, "band");
    shaded = !shaded;
  }
}

void draw_section_names(Svg& picture, const Waveform& waveform, const Scale& time) {
  for (const Span& section : waveform.sections) {
    const double end = time(section.end_ms);
    picture.line({end, kPanel.y - 20}, {end, kPanel.bottom()}, "edge");
    picture.label({(time(section.start_ms) + end) / 2, kPanel.y - 8}, Anchor::kMiddle, "section", section.label);
  }
}

}  // namespace

std::string to_svg(const Waveform& waveform) {
  Svg picture(kWidth, kHeight, waveform.title);
  picture.label({kPanel.x, 32}, Anchor::kStart, "title", waveform.title);
  const Scale time = {.from = 0, .to = waveform.length_ms(), .start = kPanel.x, .end = kPanel.right()};
  draw_bands(picture, waveform, time);
  draw_axes(picture, kPanel, waveform.length_ms());
  draw_curve(picture, kPanel, time, waveform);
  draw_section_names(picture, waveform, time);
  picture.label({kPanel.right(), kPanel.bottom() + 40}, Anchor::kEnd, "", "time in ms");
  return picture.finished();
}

}  // namespace lrasynth
