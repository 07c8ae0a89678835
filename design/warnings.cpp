// SPDX-License-Identifier: Apache-2.0
// What a designer can and would avoid in a waveform.
#include "design/warnings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "design/carrier.h"
#include "design/motor.h"
#include "design/text.h"

namespace design {
namespace {

constexpr uint8_t kFalsePeak = 128;        // as a driver reads it, -128
constexpr int kFarFromRest = 32;           // sample units: a quarter of full scale
constexpr double kFarFromPoint = 0.25;     // of the frequency that a point names
constexpr int32_t kMostStreamMs = 0xFFFF;  // 16 bits
constexpr int32_t kStreamMsOfTransient = 5;

// Samples of 128 that stand between positive ones.
int64_t false_peaks(const Waveform& waveform, Span span) {
  int64_t count = 0;
  int before = 0;
  bool open = false;  // a 128 after a positive sample
  const auto visit = [&](int64_t, std::span<const uint8_t> codes) {
    for (const uint8_t code : codes) {
      const bool is_peak = code == kFalsePeak;
      if (is_peak && (open || before > 0)) {
        open = true;
        ++count;
      } else {
        open = false;
      }
      before = is_peak ? 0 : amplitude(code);
    }
    return true;
  };
  for_blocks(waveform, waveform.sample_at(span.from), std::min(waveform.length, waveform.sample_at(span.to)), visit);
  return count;
}

std::string peaks_text(int64_t count, const std::string& most) {
  return counted(count, "positive peak") + (count == 1 ? " is" : " are") +
         " coded as 128, which a driver reads as -128; " + most + " has none";
}

// Of a tap in a pattern or by itself, 0 < asked <= 100.
template <class Driven>
void check_tap(const lrasynth_profile& profile, int32_t level, int32_t intensity, Driven driven, Warning warning,
               std::vector<Warning>& warnings) {
  const auto count_at = [&](int32_t asked) {
    const Waveform tap = tap_waveform(profile, level, driven(asked));
    return false_peaks(tap, tap.whole());
  };
  const int64_t count = count_at(intensity);
  if (count == 0) return;
  int32_t most = intensity - 1;
  while (most > 0 && count_at(most) > 0) --most;
  warning.what = peaks_text(count, text("intensity %d", most));
  warnings.push_back(warning);
}

// The warnings of one pattern.
class Inspection {
 public:
  explicit Inspection(const Score& score) : score_(score), profile_(score.profile()) {
    for (size_t i = 0; i < score.events().size(); ++i) {
      for (const Span& heard : score.heard(i)) starts_.push_back(heard.from);
    }
    std::sort(starts_.begin(), starts_.end());
  }

  std::vector<Warning> run() {
    for (size_t i = 0; i < score_.events().size(); ++i) {
      const Event& event = score_.events()[i];
      if (is_event_stream(profile_)) {
        inspect_stream_event(i);
      } else {
        inspect_cover(i);
        if (event.continuous) {
          inspect_sweeps(i);
          inspect_end(i);
        } else {
          inspect_tap(event);
        }
      }
    }
    if (is_event_stream(profile_)) inspect_stream_total();
    const auto earlier = [](const Warning& a, const Warning& b) { return a.at_ms < b.at_ms; };
    std::stable_sort(warnings_.begin(), warnings_.end(), earlier);
    return std::move(warnings_);
  }

 private:
  void warn(const Event& event, double since_start_ms, std::string what) {
    warnings_.push_back({event.number, event.start_ms + since_start_ms, std::move(what)});
  }

  // Of two events of one kind the one that starts later plays; a tap in a vibration is meant so.
  void inspect_cover(size_t i) {
    const auto& events = score_.events();
    const Span span = score_.span_of(i);
    const double missing_ms = end_ms(events[i], profile_) - span.to;
    if (missing_ms > 0) warn(events[i], 0, text("its last %.3g ms are cut", missing_ms));
    const bool never = score_.heard(i).empty() && span.length() > 0;
    for (size_t j = i + 1; j < events.size() && events[j].start_ms < span.to; ++j) {
      if (events[j].continuous != events[i].continuous) continue;
      const bool covers = events[j].start_ms == span.from && score_.span_of(j).to >= span.to;
      if (never && covers) return warn(events[i], 0, text("never plays: event %d covers it", events[j].number));
      if (never || !is_heard(j, span)) continue;
      return warn(events[i], events[j].start_ms - span.from, text("event %d plays over it", events[j].number));
    }
    if (never) warn(events[i], 0, "never plays: other events cover it");
  }

  bool is_heard(size_t event, Span within) const {
    const auto& heard = score_.heard(event);
    return std::any_of(heard.begin(), heard.end(), [&](Span span) { return overlap(span, within); });
  }

  void inspect_tap(const Event& event) {
    const auto driven = [&](int32_t asked) { return driven_intensity(profile_, event.level, asked); };
    check_tap(profile_, event.level, event.intensity, driven, {event.number, static_cast<double>(event.start_ms), {}},
              warnings_);
  }

  void inspect_sweeps(size_t i) {
    const Event& event = score_.events()[i];
    for (const Sweep& sweep : sweeps_of(profile_, event)) {
      const size_t to = sweep.to_point;
      const bool silent = event.points[to - 1].intensity == 0 && event.points[to].intensity == 0;
      if (silent || !is_heard(i, sweep.span.moved(event.start_ms))) continue;
      const double off_hz = std::fabs(sweep.reached_hz() - sweep.to_hz);
      if (off_hz <= kFarFromPoint * sweep.to_hz) continue;
      const std::string way = sweep.reached_hz() < 0
                                  ? text("runs through 0 Hz and back up to %.0f Hz", -sweep.reached_hz())
                                  : text("reaches %.0f Hz, not %.0f Hz", sweep.reached_hz(), sweep.to_hz);
      warn(event, sweep.span.from, text("from point %zu to %zu its carrier %s", to, to + 1, way.c_str()));
    }
  }

  // Where rest follows, or the end.
  void inspect_end(size_t i) {
    const Event& event = score_.events()[i];
    const Span span = score_.span_of(i);
    if (score_.heard(i).empty() || score_.heard(i).back().to < span.to) return;
    const Waveform alone = event_waveform(profile_, event);
    uint8_t code = 0;
    if (alone.length > 0) alone.read(alone.length - 1, {&code, 1});
    const int last = amplitude(code);
    if (std::abs(last) < kFarFromRest || plays_on_at(span.to)) return;
    warn(event, span.length(), text("ends far from rest, at amplitude %d", last));
  }

  // Whether any event is heard from there on.
  bool plays_on_at(double ms) const { return std::binary_search(starts_.begin(), starts_.end(), ms); }

  void inspect_stream_event(size_t i) {
    const Event& event = score_.events()[i];
    const int32_t delta_ms = event.start_ms - (i == 0 ? 0 : score_.events()[i - 1].start_ms);
    if (delta_ms > kMostStreamMs) wrap(event.number, event.start_ms, "the time since the event before", delta_ms);
    if (event.duration_ms > kMostStreamMs) wrap(event.number, event.start_ms, "its duration", event.duration_ms);
  }

  void inspect_stream_total() {
    int64_t total_ms = score_.events().back().start_ms;
    for (const Event& event : score_.events()) {
      total_ms += event.continuous ? event.duration_ms : kStreamMsOfTransient;
    }
    total_ms *= score_.playback().loops;
    if (total_ms > kMostStreamMs) wrap(0, 0, "the total time", total_ms);
  }

  void wrap(int32_t event, double at_ms, const char* what, int64_t ms) {
    warnings_.push_back({event, at_ms,
                         text("%s, %lld ms, is told in 16 bits and becomes %lld ms", what, static_cast<long long>(ms),
                              static_cast<long long>(ms & kMostStreamMs))});
  }

  const Score& score_;
  lrasynth_profile profile_;
  std::vector<double> starts_;  // of all that is heard, ascending
  std::vector<Warning> warnings_;
};

}  // namespace

std::string line_of(const Warning& warning) {
  const std::string where = warning.event > 0 ? text("event %d at %.10g ms: ", warning.event, warning.at_ms) : "";
  return where + warning.what;
}

std::vector<Warning> warnings_of_tap(const lrasynth_profile& profile, int32_t level, int32_t intensity) {
  std::vector<Warning> warnings;
  check_tap(
      profile, level, intensity, [](int32_t asked) { return asked; }, {}, warnings);
  return warnings;
}

std::vector<Warning> warnings_of_tone(const Waveform& tone, int32_t amplitude) {
  const int64_t count = false_peaks(tone, tone.whole());
  if (count == 0) return {};
  return {{0, 0, peaks_text(count, text("amplitude %d", amplitude - 1))}};
}

std::vector<Warning> warnings_of(const Score& score) { return Inspection(score).run(); }

Jump largest_restart(const Score& score) {
  Jump largest;
  for (size_t i = 0; i < score.events().size(); ++i) {
    const Event& event = score.events()[i];
    if (!event.continuous) continue;
    const Waveform alone = event_waveform(score.profile(), event);
    for (size_t point = 1; point < 3; ++point) {
      const int64_t at = static_cast<int64_t>(score.profile().sample_rate / 1000) * event.point_ms(point);
      const double at_ms = event.start_ms + event.point_ms(point);
      const auto& heard = score.heard(i);
      const auto inside = [&](Span span) { return span.from < at_ms && at_ms < span.to; };
      if (at < 1 || at >= alone.length || std::none_of(heard.begin(), heard.end(), inside)) continue;
      uint8_t around[2];
      alone.read(at - 1, around);
      const int height = std::abs(amplitude(around[1]) - amplitude(around[0]));
      if (height > largest.height) largest = {event.number, at_ms, height};
    }
  }
  return largest;
}

}  // namespace design
