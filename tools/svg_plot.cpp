// SPDX-License-Identifier: Apache-2.0
// The SVG form: one waveform over time, a pattern with its events below.
#include "output.h"
#include "panel.h"
#include "text.h"

namespace command {
namespace {

constexpr double kLeft = 80;
constexpr double kWidth = 880;
constexpr Box kCurveBox = {.x = kLeft, .y = 78, .width = kWidth, .height = 290};
constexpr Box kEventBox = {.x = kLeft, .y = 408, .width = kWidth, .height = 56};
constexpr double kFoot = 48;  // below the last panel

// Apart from the names, because shading lies below the grid.
void shade(Svg& picture, const Panel& panel, const std::vector<Section>& sections) {
  for (const Section& section : sections) {
    if (!section.shaded) continue;
    const Point start = panel.at(section.start_ms, panel.y.to);
    const double end = panel.at(section.end_ms, 0).x;
    picture.rectangle({.x = start.x, .y = start.y, .width = end - start.x, .height = panel.box.height}, "band");
  }
}

// A name wider than its section is left out.
void name_sections(Svg& picture, const Panel& panel, const std::vector<Section>& sections) {
  constexpr double kLetterWidth = 7;
  for (const Section& section : sections) {
    const double start = panel.at(section.start_ms, 0).x;
    const double end = panel.at(section.end_ms, 0).x;
    picture.line({end, panel.box.y - 20}, {end, panel.box.bottom()}, "edge");
    if (kLetterWidth * static_cast<double>(section.label.size()) > end - start) continue;
    picture.label({(start + end) / 2, panel.box.y - 8}, kMiddle, "", section.label);
  }
}

// Vibrations in the order in which they are drawn, then the transients, which play over them.
void draw_events(Svg& picture, const Panel& panel, const std::vector<EventShape>& events) {
  for (const bool continuous : {true, false}) {
    for (const EventShape& event : events) {
      if (event.continuous != continuous) continue;
      std::vector<Point> outline;
      for (const auto& [ms, intensity] : event.intensity_at_ms) outline.push_back(panel.at(ms, intensity));
      picture.path(outline, continuous ? "vibration" : "transient");
    }
  }
}

}  // namespace

std::string to_svg(const Waveform& waveform) {
  const Axis time = time_axis(waveform.length_ms(), kWidth);
  const Panel curve = {.box = kCurveBox, .x = time, .y = kAmplitudeAxis};
  const Panel track = {.box = kEventBox, .x = time, .y = {0, 100, 50}};
  const Panel& last = waveform.events.empty() ? curve : track;
  Svg picture(kLeft + kWidth + 24, last.box.bottom() + kFoot, waveform.title);
  picture.label({kLeft, 32}, kStart, "title", waveform.title);
  picture.label({kLeft + kWidth, 32}, kEnd, "",
                text("%zu samples, %d a second", waveform.codes.size(), waveform.sample_rate));
  picture.label({kLeft - 8, kCurveBox.y - 12}, kEnd, "", "amplitude");
  shade(picture, curve, waveform.sections);
  draw_grid(picture, curve);
  label_y(picture, curve);
  draw_waveform(picture, curve, waveform);
  name_sections(picture, curve, waveform.sections);
  if (!waveform.events.empty()) {
    picture.label({kLeft - 8, kEventBox.y - 14}, kEnd, "", "events, %");
    draw_grid(picture, track);
    label_y(picture, track);
    draw_events(picture, track, waveform.events);
  }
  label_x(picture, last, "time in ms");
  return picture.finished();
}

}  // namespace command
