// SPDX-License-Identifier: Apache-2.0
// Pictures of several waveforms.
#include "design/picture/sheet.h"

#include <algorithm>

#include "design/advice/summary.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/picture/panel.h"

namespace design {
namespace {

constexpr double kLeft = 80;
constexpr double kTop = 76;
constexpr double kFoot = 48;
constexpr Axis kSmallAmplitudeAxis = {kAmplitudeAxis.from, kAmplitudeAxis.to, kAmplitudeAxis.to};

// More taps than fit below one another go into columns.
constexpr size_t kMostRows = 8;
constexpr double kTapStride = 116;
constexpr Box kFirstTap = {.x = kLeft, .y = kTop, .width = 520, .height = 84};
constexpr Box kNarrowTap = {.x = kLeft, .y = kTop, .width = 250, .height = 84};
constexpr double kColumnGap = 70;

// What stands at the left of the panels below.
void label_amplitude(Svg& picture) { picture.label({kLeft - 8, kTop - 12}, kEnd, "", "amplitude"); }

// Returns the right and lower end of what was drawn.
Point draw_taps(Svg& picture, const Sheet& sheet) {
  std::vector<Waveform> taps;
  double longest_ms = 0;
  for (const int32_t level : sheet.levels) {
    const int32_t driven = sheet.in_pattern ? driven_intensity(sheet.profile, level, sheet.intensity) : sheet.intensity;
    taps.push_back(tap_waveform(sheet.profile, level, driven));
    taps.back().title = text("level %d", level) + (sheet.in_pattern ? text(", driven at %d %%", driven) : "");
    if (!warnings_of_tap(sheet.profile, level, sheet.intensity, sheet.in_pattern).empty()) taps.back().title += " !";
    longest_ms = std::max(longest_ms, taps.back().length_ms());
  }
  const size_t columns = (taps.size() + kMostRows - 1) / kMostRows;
  const size_t rows = (taps.size() + columns - 1) / columns;
  const Box first = columns > 1 ? kNarrowTap : kFirstTap;
  Panel panel = {.box = first, .x = time_axis({0, longest_ms}, first.width), .y = kSmallAmplitudeAxis};
  for (size_t i = 0; i < taps.size(); ++i) {
    panel.box.x = first.x + (first.width + kColumnGap) * static_cast<double>(i / rows);
    panel.box.y = first.y + kTapStride * static_cast<double>(i % rows);
    draw_grid(picture, panel);
    if (i < rows) label_y(picture, panel);
    draw_waveform(picture, panel, taps[i]);
    const double end = panel.x_at(taps[i].length_ms());
    picture.line({end, panel.box.y}, {end, panel.box.bottom()}, "edge");
    picture.label({panel.box.x, panel.box.y - 7}, kStart, "strong", taps[i].title);
    picture.label({panel.box.right(), panel.box.y - 7}, kEnd, "", text("%.1f ms", taps[i].length_ms()));
    if (i % rows == rows - 1 || i == taps.size() - 1) label_x(picture, panel, "time in ms");
  }
  return {panel.box.right(), first.y + kTapStride * static_cast<double>(rows - 1) + first.height};
}

// Over the frequency offset, below one another beside the taps, side by side where they are all.
void draw_curves(Svg& picture, const lrasynth_profile& profile, Panel& panel, bool side_by_side) {
  const struct {
    const char* quantity;
    double (*value)(const lrasynth_profile& profile, int32_t offset);
    Axis axis;
  } curves[] = {
      {"continuous vibration: frequency, Hz",
       [](const lrasynth_profile& p, int32_t offset) -> double { return hertz_at(p, offset); },
       {0, 400, 100}},
      {"continuous vibration: gain",
       [](const lrasynth_profile& p, int32_t offset) { return gain_at(p, offset); },
       {0, 1, 0.25}},
  };
  for (const auto& curve : curves) {
    panel.y = curve.axis;
    std::vector<Point> points;
    for (int32_t offset = -50; offset <= 50; ++offset) points.push_back(panel.at(offset, curve.value(profile, offset)));
    draw_grid(picture, panel);
    picture.path(points, "curve");
    label_y(picture, panel);
    label_x(picture, panel, "frequency offset");
    picture.label({panel.box.x, panel.box.y - 7}, kStart, "strong", curve.quantity);
    (side_by_side ? panel.box.x : panel.box.y) += side_by_side ? panel.box.width + 90 : panel.box.height + 84;
  }
}

}  // namespace

std::string title_of(const Sheet& sheet) {
  if (!sheet.title.empty()) return sheet.title;
  const std::string motor = "Sheet: " + name_of(sheet.profile);
  if (!has_taps(sheet.profile)) return motor + " (no taps)";
  return motor + text(", taps at intensity %d %%%s", sheet.intensity, sheet.in_pattern ? " in a pattern" : "");
}

std::string sheet_of(const Sheet& sheet) {
  const std::string title = title_of(sheet);
  Svg picture;
  picture.title({kLeft, 32}, 880, title);
  Panel panel = {.box = {.x = kLeft, .y = kTop, .width = 410, .height = 260}, .x = {-50, 50, 10}, .y = {}};
  if (!has_taps(sheet.profile)) {
    draw_curves(picture, sheet.profile, panel, true);
    return picture.finished(panel.box.x - 50, panel.box.bottom() + kFoot, title);
  }
  label_amplitude(picture);
  const Point end = draw_taps(picture, sheet);
  panel.box = {.x = end.x + 80, .y = kTop, .width = 330, .height = 170};
  panel.x.step = 25;
  draw_curves(picture, sheet.profile, panel, false);
  return picture.finished(panel.box.right() + 24, std::max(panel.box.y - 84, end.y) + kFoot, title);
}

std::string comparison_of(const std::string& title, const std::vector<Piece>& pieces,
                          const std::vector<Motion>& motions, const std::vector<Felt>& felts, Span shown) {
  constexpr double kStride = 206;
  constexpr double kFeltBelow = 14;
  Panel panel = {.box = {.x = kLeft, .y = kTop, .width = 640, .height = 106},
                 .x = time_axis(shown, 640),
                 .y = kSmallAmplitudeAxis};
  double full = 0;
  for (const Motion& motion : motions) full = std::max(full, motion.response().peak);
  double strongest = 0;
  for (const Felt& felt : felts) strongest = std::max(strongest, felt.strongest());
  Panel felt_panel = {.box = panel.box, .x = panel.x, .y = felt_axis(strongest)};
  felt_panel.box.height = 46;
  Svg picture;
  picture.title({kLeft, 24}, 880, title);
  picture.label(
      {kLeft, 42}, kStart, "small",
      text("soft band: the displacement, estimated; full height is %.1f %% of what a lasting full-scale tone at "
           "the resonance gives",
           100 * full));
  picture.label({kLeft, 55}, kStart, "small",
                text("below: what is felt, estimated as the numbers say: dB above threshold; %.0f are 100 %%; dotted: "
                     "%.0f, below which it may not be felt",
                     kFullyFelt, kHardlyFelt));
  label_amplitude(picture);
  for (size_t i = 0; i < pieces.size(); ++i) {
    draw_grid(picture, panel);
    label_y(picture, panel);
    draw_response(picture, panel, motions[i], full);
    draw_waveform(picture, panel, pieces[i].waveform);
    picture.label({panel.box.x, panel.box.y - 7}, kStart, "strong", pieces[i].waveform.title);
    felt_panel.box.y = panel.box.bottom() + kFeltBelow;
    draw_grid(picture, felt_panel);
    label_y(picture, felt_panel);
    picture.label({kLeft - 34, felt_panel.box.y + 4}, kEnd, "", "felt");
    draw_felt(picture, felt_panel, felts[i]);
    double y = panel.box.y + 6;
    for (const auto& [name, value] : numbers_of(pieces[i], motions[i].response(), felts[i])) {
      picture.label({panel.box.right() + 14, y}, kStart, "", name);
      picture.label({panel.box.right() + 300, y}, kEnd, "strong", value);
      y += 14;
    }
    panel.box.y += kStride;
  }
  panel.box.y -= kStride;
  label_x(picture, felt_panel, time_words(felt_panel.x));
  return picture.finished(panel.box.right() + 320, felt_panel.box.bottom() + kFoot, title);
}

}  // namespace design
