// SPDX-License-Identifier: Apache-2.0
// lrasynth sheet: the character of a motor model in one picture.
#include <algorithm>
#include <memory>

#include "options.h"
#include "panel.h"
#include "text.h"

namespace command {
namespace {

struct Sheet {
  Profile profile;
  std::vector<int32_t> levels = {0, 25, 50, 75, 100};
  int32_t intensity = 80;
  std::string path;
};

constexpr double kLeft = 70;
constexpr double kTop = 76;
constexpr double kFoot = 48;

// Taps of several levels below one another, on the same scales.
std::string tap_sheet(const Sheet& sheet, const std::string& title) {
  constexpr Box kFirst = {.x = kLeft, .y = kTop, .width = 640, .height = 84};
  constexpr double kStride = 116;
  std::vector<Waveform> taps;
  double longest_ms = 0;
  for (const int32_t level : sheet.levels) {
    Waveform tap = {.title = text("level %d", level),
                    .codes = std::vector<uint8_t>(static_cast<size_t>(getShortSignalDataLength(level)))};
    getShortSignalData(level, sheet.intensity, tap.codes.data());
    longest_ms = std::max(longest_ms, tap.length_ms());
    taps.push_back(std::move(tap));
  }
  Panel panel = {.box = kFirst, .x = time_axis(longest_ms, kFirst.width), .y = kAmplitudeAxis};
  panel.y.step = kAmplitudeAxis.to;
  const double bottom = kFirst.y + kStride * static_cast<double>(taps.size() - 1) + kFirst.height;
  Svg picture(kFirst.right() + 24, bottom + kFoot, title);
  picture.label({kLeft, 32}, kStart, "title", title);
  for (const Waveform& tap : taps) {
    draw_grid(picture, panel);
    label_y(picture, panel);
    draw_waveform(picture, panel, tap);
    const double end = panel.at(tap.length_ms(), 0).x;
    picture.line({end, panel.box.y}, {end, panel.box.bottom()}, "edge");
    picture.label({kLeft, panel.box.y - 7}, kStart, "strong", tap.title);
    picture.label({end, panel.box.y - 7}, kEnd, "", text("%.1f ms", tap.length_ms()));
    panel.box.y += kStride;
  }
  panel.box.y -= kStride;
  label_x(picture, panel, "time in ms");
  return picture.finished();
}

// Over the frequency offset, which is all the character that a motor model without taps has.
std::string curve_sheet(const std::string& title) {
  const struct {
    const char* quantity;
    float (*value)(int32_t offset);
    Axis axis;
  } curves[] = {
      {"frequency, Hz",
       [](int32_t offset) { return static_cast<float>(getFrequency_4096(getF0(), offset)); },
       {0, 400, 100}},
      {"gain", getIntensityMax, {0, 1, 0.25}},
  };
  constexpr double kStride = 500;
  Panel panel = {.box = {.x = kLeft, .y = kTop, .width = 410, .height = 260}, .x = {-50, 50, 10}, .y = {}};
  Svg picture(kStride * std::size(curves), panel.box.bottom() + kFoot, title);
  picture.label({kLeft, 32}, kStart, "title", title);
  for (const auto& curve : curves) {
    panel.y = curve.axis;
    std::vector<Point> points;
    for (int32_t offset = -50; offset <= 50; ++offset)
      points.push_back(panel.at(offset, static_cast<double>(curve.value(offset))));
    draw_grid(picture, panel);
    picture.path(points, "curve");
    label_y(picture, panel);
    label_x(picture, panel, "frequency offset");
    picture.label({panel.box.x, panel.box.y - 7}, kStart, "strong", curve.quantity);
    panel.box.x += kStride;
  }
  return picture.finished();
}

void run(const Sheet& sheet) {
  sheet.profile.apply();
  const bool has_taps = getShortSignalDataLength(0) > 0;
  const std::string title =
      text("Motor %d: %s", sheet.profile.motor,
           has_taps ? text("taps at intensity %d %%", sheet.intensity).c_str() : "continuous vibration (no taps)");
  write_files({{sheet.path, has_taps ? tap_sheet(sheet, title) : curve_sheet(title), title}});
}

}  // namespace

void add_sheet(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("sheet", "Draw the taps of a motor model, or its curves if it has no taps");
  const auto sheet = std::make_shared<Sheet>();
  sheet->profile.add_motor(command);
  command.add_option("--levels", sheet->levels, "Levels from 0 to 100, separated by commas")
      ->delimiter(',')
      ->check(quiet(CLI::Range(0, 100)))
      ->type_name("LIST")
      ->default_str("0,25,50,75,100");
  add_integer(command, "--intensity", sheet->intensity, "Strength in percent", 0, 100)->capture_default_str();
  sheet->profile.add_chip(command);
  const auto check_path = [](const std::string& path) {
    return path == kStandardOutput || path.ends_with(".svg") ? "" : path + " must end in .svg, or be -";
  };
  command.add_option("OUTPUT", sheet->path, "The .svg file to write; - is standard output")
      ->check(CLI::Validator(check_path, ""))
      ->type_name("")
      ->required();
  command.footer("Example:\n  lrasynth sheet --motor 1040 --levels 0,20,40,60,80,100 sheet.svg");
  command.callback([sheet] { run(*sheet); });
}

}  // namespace command
