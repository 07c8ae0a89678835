// SPDX-License-Identifier: Apache-2.0
// The picture of one waveform over time.
#include "design/picture/plot.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/picture/panel.h"
#include "design/waveform/stretch.h"

namespace design {
namespace {

constexpr double kLeft = 80;
constexpr double kWidth = 880;
constexpr double kLeastPixels = 3;  // of a section that is marked
constexpr double kLine = 17;        // from one line of text to the next

Span common(Span a, Span b) { return {std::max(a.from, b.from), std::min(a.to, b.to)}; }

// Keeps labels of one row apart, and inside the width of the panels.
class LabelRow {
 public:
  // Where a label goes that is to be centred there, if there is room.
  std::optional<double> place(double x, const std::string& words) {
    const double half = label_width(words) / 2;
    x = std::clamp(x, kLeft + half, kLeft + kWidth - half);
    if (x - half < free_from_) return std::nullopt;
    free_from_ = x + half + 12;
    return x;
  }

 private:
  double free_from_ = 0;
};

class Plot {
 public:
  Plot(const Piece& piece, Span shown)
      : waveform_(piece.waveform),
        score_(piece.score.get()),
        warnings_(piece.warnings),
        shown_(shown),
        time_(time_axis(shown, kWidth)) {}

  std::string draw(const Motion* motion, const Felt& felt) {
    picture_.title({kLeft, 32}, kWidth, waveform_.title);
    std::vector<std::string> foot;
    draw_samples(motion, foot);
    draw_what_is_felt(felt);
    if (score_ != nullptr) {
      draw_frequency();
      draw_events();
    }
    label_x(picture_, last_, time_words(time_));
    picture_.label({kLeft, bottom_ + 36}, kStart, "",
                   counted(waveform_.length, "sample") + text(", %d a second", waveform_.profile.sample_rate));
    bottom_ += 53;
    for (const std::string& line : foot) write_line(line);
    write_warnings();
    return picture_.finished(kLeft + kWidth + 24, bottom_, waveform_.title);
  }

 private:
  // The next panel below, its name at the left of the row above it.
  const Panel& add_panel(const char* name, double row, double height, const Axis& y) {
    const Box box = {.x = kLeft, .y = bottom_ + row, .width = kWidth, .height = height};
    picture_.label({kLeft - 8, box.y - 12}, kEnd, "", name);
    last_ = {.box = box, .x = time_, .y = y};
    bottom_ = box.bottom();
    return last_;
  }

  void draw_samples(const Motion* motion, std::vector<std::string>& foot) {
    const Panel panel = add_panel("amplitude", 30, 290, kAmplitudeAxis);
    for_sections(kLeastPixels, [&](const Section& section, Span span) {
      const double from = panel.x_at(span.from);
      const Box band = {.x = from, .y = panel.box.y, .width = panel.x_at(span.to) - from, .height = panel.box.height};
      if (section.shaded) picture_.rectangle(band, "band");
    });
    draw_grid(picture_, panel);
    label_y(picture_, panel);
    if (motion != nullptr) {
      draw_response(picture_, panel, *motion, motion->response().peak);
      foot.push_back("soft band: the displacement, estimated, its peak at full height; " +
                     numbers_line(motion->response()));
    }
    draw_waveform(picture_, panel, waveform_);
    name_sections(panel);
    LabelRow marks;
    for (const Warning& warning : warnings_) {
      if (warning.event.entry == 0 || !is_shown(warning)) continue;
      const auto x = marks.place(panel.x_at(warning.at_ms), "!");
      if (x) picture_.label({*x, panel.box.y + 13}, kMiddle, "warning", "!");
    }
  }

  void draw_what_is_felt(const Felt& felt) {
    const Panel panel = add_panel("felt, dB SL", 40, 70, felt_axis(felt.strongest()));
    draw_grid(picture_, panel);
    label_y(picture_, panel);
    draw_felt(picture_, panel, felt);
    write_legend(panel, text("what is felt, estimated at %s: dB above threshold; %.0f are 100 %%; dotted: %.0f, below "
                             "which it may not be felt",
                             words_of(felt.resonator()).c_str(), kFullyFelt, kHardlyFelt));
  }

  std::string numbers_line(const Response& response) const {
    std::string words;
    for (const auto& [name, value] : numbers_of(response, score_ == nullptr)) {
      words += (words.empty() ? "" : ", ") + name + " " + value;
    }
    return words;
  }

  // Of a section's part that is shown, where it is long enough.
  template <class Do>
  void for_sections(double least_pixels, Do act) const {
    for (const Section& section : waveform_.sections) {
      const Span span = common(section.span, shown_);
      const double pixels = section.span.length() / shown_.length() * kWidth;
      if (span.length() > 0 && pixels >= least_pixels) act(section, span);
    }
  }

  void name_sections(const Panel& panel) {
    LabelRow row;
    for_sections(0, [&](const Section& section, Span span) {
      const double from = panel.x_at(span.from);
      const double to = panel.x_at(span.to);
      const bool fits = label_width(section.label) <= to - from;
      if (span.to < shown_.to && to - from >= kLeastPixels)
        picture_.line({to, panel.box.y - (fits ? 20 : 0)}, {to, panel.box.bottom()}, "edge");
      if (section.needs_room && !fits) return;
      const auto x = row.place((from + to) / 2, section.label);
      if (x) picture_.label({*x, panel.box.y - 8}, kMiddle, "", section.label);
    });
  }

  // Whether events can be told apart; says so where they would only blacken the picture.
  bool has_room_for_events(const Panel& panel) {
    constexpr double kLeastPixelsOfPass = 12;
    const double pixels = score_->pass_start_ms(1) / shown_.length() * kWidth;
    if (pixels >= kLeastPixelsOfPass || score_->playback().loops == 1) return true;
    picture_.label({panel.box.x + kWidth / 2, panel.box.y + panel.box.height / 2 - 6}, kMiddle, "",
                   "too many passes to draw");
    return false;
  }

  // Every event in every pass that is shown.
  template <class Do>
  void for_events(Do act) {
    const double stride_ms = score_->pass_start_ms(1);
    const auto first = static_cast<int32_t>(std::max(0.0, std::floor(shown_.from / stride_ms)));
    for (int32_t pass = first; pass < score_->playback().loops; ++pass) {
      const double start_ms = score_->pass_start_ms(pass);
      if (start_ms >= shown_.to) return;
      for (size_t i = 0; i < score_->events().size(); ++i) {
        if (overlap(score_->span_of(i).moved(start_ms), shown_)) act(i, start_ms);
      }
    }
  }

  // A line from one place to another, as far as it is shown.
  void draw_line(const Panel& panel, Span span, double from, double to, const char* style) {
    const Span part = common(span, shown_);
    if (part.length() <= 0) return;
    const auto at = [&](double ms) { return panel.at(ms, from + (to - from) * (ms - span.from) / span.length()); };
    picture_.line(at(part.from), at(part.to), style);
  }

  double highest_hz() const {
    double highest = 200;
    for (const Event& event : score_->events()) {
      if (const Tap* const tap = event.tap()) {
        for (const TapSegment& segment : tap_segments(score_->profile(), tap->level)) {
          highest = std::max(highest, static_cast<double>(segment.hz));
        }
      }
      for (const Asked& point : line_of(score_->profile(), event)) highest = std::max(highest, point.hz);
      for (const Stretch& stretch : stretches_of(score_->profile(), event)) {
        highest = std::max({highest, stretch.from_hz, std::fabs(stretch.reached_hz())});
      }
    }
    return highest;
  }

  void draw_frequency() {
    const double top = std::ceil(highest_hz() / 100) * 100;
    const Panel panel = add_panel("Hz", 40, 90, {0, top, top > 400 ? 200.0 : 100.0});
    draw_grid(picture_, panel);
    label_y(picture_, panel);
    const auto is_untold = [&](const Event& event) {
      return event.tap() != nullptr && tap_segments(score_->profile(), event.tap()->level).empty();
    };
    const bool untold = std::any_of(score_->events().begin(), score_->events().end(), is_untold);
    write_legend(panel, std::string("line: the carrier; dotted: what the points say") +
                            (untold ? "; taps are stored bursts, of which no frequency is known" : ""));
    if (!has_room_for_events(panel)) return;
    for_events([&](size_t i, double start_ms) {
      const Event& event = score_->events()[i];
      event.tap() != nullptr ? draw_segments(panel, i, *event.tap(), start_ms + event.start_ms)
                             : draw_carriers(panel, i, start_ms + event.start_ms);
    });
  }

  void draw_carriers(const Panel& panel, size_t i, double start_ms) {
    const std::vector<Asked> line = line_of(score_->profile(), score_->events()[i]);
    for (size_t to = 1; to < line.size(); ++to) {
      const Span span = {line[to - 1].ms, line[to].ms};
      draw_line(panel, span.moved(start_ms), line[to - 1].hz, line[to].hz, "aim");
    }
    for (const Stretch& stretch : stretches_of(score_->profile(), score_->events()[i])) {
      for (const Span& heard : score_->heard(i)) {
        const Span part = common(stretch.span, heard.moved(-score_->events()[i].start_ms));
        if (part.length() > 0) draw_carrier(panel, stretch, part, start_ms);
      }
    }
  }

  // Two lines where it runs through 0 Hz.
  void draw_carrier(const Panel& panel, const Stretch& stretch, Span part, double start_ms) {
    const double turn =
        stretch.span.from + stretch.from_hz / (stretch.from_hz - stretch.reached_hz()) * stretch.span.length();
    const bool turns = stretch.reached_hz() < 0 && part.from < turn && turn < part.to;
    const auto draw = [&](Span span) {
      draw_line(panel, span.moved(start_ms), std::fabs(stretch.hz_at(span.from)), std::fabs(stretch.hz_at(span.to)),
                "curve");
    };
    if (!turns) return draw(part);
    draw({part.from, turn});
    draw({turn, part.to});
  }

  void draw_segments(const Panel& panel, size_t i, const Tap& tap, double start_ms) {
    const double own_ms = score_->events()[i].start_ms;
    double at_ms = own_ms;
    for (const TapSegment& segment : tap_segments(score_->profile(), tap.level)) {
      const Span sounds = {at_ms, at_ms + segment.length_ms};
      at_ms = sounds.to;
      if (segment.hz == 0) continue;
      for (const Span& heard : score_->heard(i)) {
        draw_line(panel, common(sounds, heard).moved(start_ms - own_ms), segment.hz, segment.hz, "curve");
      }
    }
  }

  // Vibrations in the order in which they are drawn, then the taps, which play over them.
  void draw_events() {
    const Panel panel = add_panel("events, %", 58, 84, {0, 100, 50});
    draw_grid(picture_, panel);
    label_y(picture_, panel);
    write_legend(panel,
                 "outlined: the intensity as asked; filled: what plays, as strong as it is driven (of full scale)", 20);
    if (!has_room_for_events(panel)) return;
    for_events([&](size_t i, double pass_start_ms) {
      if (score_->events()[i].tap() == nullptr) draw_vibration(panel, i, pass_start_ms);
    });
    LabelRow row;
    for_events([&](size_t i, double pass_start_ms) {
      const Event& event = score_->events()[i];
      if (event.tap() != nullptr) draw_tap(panel, i, *event.tap(), pass_start_ms, row);
    });
  }

  // As asked in outline, straight from point to point; filled where it is what plays, with the envelope that it has.
  void draw_vibration(const Panel& panel, size_t i, double pass_start_ms) {
    const double start_ms = pass_start_ms + score_->events()[i].start_ms;
    for (const Stretch& stretch : stretches_of(score_->profile(), score_->events()[i])) {
      for (const Span& heard : score_->heard(i)) {
        const Span part = common(common(stretch.span.moved(start_ms), heard.moved(pass_start_ms)), shown_);
        if (part.length() > 0) draw_envelope(panel, stretch, part, start_ms);
      }
    }
    const Span asked = common(score_->span_of(i).moved(pass_start_ms), shown_);
    const std::vector<Asked> line = line_of(score_->profile(), score_->events()[i]);
    if (asked.length() > 0 && !line.empty()) draw_intensity(panel, line, asked, start_ms);
  }

  void draw_envelope(const Panel& panel, const Stretch& stretch, Span part, double start_ms) {
    const double pixels = part.length() / shown_.length() * kWidth;
    const bool is_level = stretch.from_amplitude == stretch.to_amplitude;
    const double steps = is_level ? 1 : std::clamp(std::floor(pixels / 2), 1.0, 60.0);
    std::vector<Point> outline = {panel.at(part.from, 0)};
    for (double step = 0; step <= steps; ++step) {
      const double ms = part.from + part.length() * step / steps;
      outline.push_back(panel.at(ms, 100 * stretch.amplitude_at(ms - start_ms) / kFullScale));
    }
    outline.push_back(panel.at(part.to, 0));
    picture_.path(outline, "vibration");
  }

  void draw_intensity(const Panel& panel, const std::vector<Asked>& line, Span part, double start_ms) {
    std::vector<Point> outline = {panel.at(part.from, 0),
                                  panel.at(part.from, intensity_at(line, part.from - start_ms))};
    for (const Asked& point : line) {
      const double ms = start_ms + point.ms;
      if (ms >= part.from && ms <= part.to) outline.push_back(panel.at(ms, point.intensity));
    }
    outline.push_back(panel.at(part.to, intensity_at(line, part.to - start_ms)));
    outline.push_back(panel.at(part.to, 0));
    picture_.path(outline, "outline");
  }

  static double intensity_at(const std::vector<Asked>& line, double ms) {
    size_t to = 1;
    while (to + 1 < line.size() && line[to].ms < ms) ++to;
    const Asked& from = line[to - 1];
    const double length_ms = line[to].ms - from.ms;
    const double share = length_ms <= 0 ? 1 : std::clamp((ms - from.ms) / length_ms, 0.0, 1.0);
    return from.intensity + share * (line[to].intensity - from.intensity);
  }

  // As strong as asked in outline, filled as strong as the motor is driven, with level and strength above.
  void draw_tap(const Panel& panel, size_t i, const Tap& tap, double pass_start_ms, LabelRow& row) {
    const Span span = common(score_->span_of(i).moved(pass_start_ms), shown_);
    const int32_t driven = driven_intensity(score_->profile(), tap.level, tap.intensity);
    const auto bar = [&](Span part, double height) {
      const Point corner = panel.at(part.from, height);
      return Box{corner.x, corner.y, panel.x_at(part.to) - corner.x, panel.box.bottom() - corner.y};
    };
    picture_.rectangle(bar(span, tap.strongest()), "outline");
    for (const Span& heard : score_->heard(i)) {
      const Span part = common(heard.moved(pass_start_ms), shown_);
      if (part.length() > 0) picture_.rectangle(bar(part, driven), "transient");
    }
    const std::string words = text("L%d %d %%", tap.level, driven);
    for (const Span& heard : score_->heard(i)) {
      const Span part = common(heard.moved(pass_start_ms), shown_);
      if (part.length() <= 0) continue;
      const auto x = row.place((panel.x_at(part.from) + panel.x_at(part.to)) / 2, words);
      if (x) picture_.label({*x, panel.box.y - 5}, kMiddle, "small", words);
      return;
    }
  }

  // In as many lines as it takes.
  void write_line(const std::string& words) {
    for (const std::string& line : wrapped(words, kWidth)) {
      picture_.label({kLeft, bottom_ + 4}, kStart, "", line);
      bottom_ += kLine;
    }
  }

  // What colours and dashes mean, at the right above a panel.
  void write_legend(const Panel& panel, const std::string& words, double above = 8) {
    picture_.label({kLeft + kWidth, panel.box.y - above}, kEnd, "small", words);
  }

  // Of what is shown, where only a part is.
  void write_warnings() {
    constexpr size_t kMost = 6;
    std::vector<Warning> shown;
    std::copy_if(warnings_.begin(), warnings_.end(), std::back_inserter(shown),
                 [&](const Warning& warning) { return is_shown(warning); });
    for (const std::string& line : lines_of(shown, kMost)) write_line("! " + line);
    const size_t hidden = warnings_.size() - shown.size();
    if (hidden > 0) write_line("! and " + counted(static_cast<int64_t>(hidden), "warning") + " beside what is shown");
  }

  bool is_shown(const Warning& warning) const {
    return warning.event.entry == 0 || (warning.at_ms >= shown_.from && warning.at_ms <= shown_.to);
  }

  const Waveform& waveform_;
  const Score* score_;  // null: no pattern
  const std::vector<Warning>& warnings_;
  Span shown_;
  Axis time_;
  Svg picture_;
  Panel last_ = {};
  double bottom_ = 48;
};

}  // namespace

std::string plot_of(const Piece& piece, const Motion* motion, const Felt& felt, Span shown) {
  return Plot(piece, shown).draw(motion, felt);
}

}  // namespace design
