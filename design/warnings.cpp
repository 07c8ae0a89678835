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
  };
  for_blocks(waveform, waveform.sample_at(span.from), std::min(waveform.length, waveform.sample_at(span.to)), visit);
  return count;
}

std::string peaks_text(int64_t count, const std::string& most) {
  return text("%lld positive peak%s coded as 128, which a driver reads as -128; %s has none",
              static_cast<long long>(count), count == 1 ? " is" : "s are", most.c_str());
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
  explicit Inspection(const Score& score) : score_(score), profile_(score.profile()) {}

  std::vector<Warning> run() {
    for (size_t i = 0; i < score_.events().size(); ++i) {
      const Event& event = score_.events()[i];
      if (is_event_stream(profile_)) {
        inspect_stream_event(i);
      } else {
        inspect_cover(i);
        if (event.continuous) {
          inspect_sweeps(event);
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
    const Event& event = score_.events()[i];
    const Span span = score_.span_of(i);
    const double missing_ms = end_ms(event, profile_) - span.to;
    if (missing_ms > 0) warn(event, 0, text("its last %.3g ms are cut", missing_ms));
    if (span.length() <= 0) return;
    const auto& events = score_.events();
    const auto rival = std::find_if(events.begin() + static_cast<std::ptrdiff_t>(i) + 1, events.end(),
                                    [&](const Event& later) { return later.continuous == event.continuous; });
    const bool overlaps = rival != events.end() && rival->start_ms < span.to;
    if (score_.heard(i).empty()) {
      warn(event, 0, overlaps ? text("never plays: event %d covers it", rival->number) : "never plays: taps cover it");
    } else if (overlaps) {
      warn(event, rival->start_ms - event.start_ms, text("event %d plays over it", rival->number));
    }
  }

  void inspect_tap(const Event& event) {
    const auto driven = [&](int32_t asked) { return driven_intensity(profile_, event.level, asked); };
    check_tap(profile_, event.level, event.intensity, driven, {event.number, static_cast<double>(event.start_ms), {}},
              warnings_);
  }

  void inspect_sweeps(const Event& event) {
    for (const Sweep& sweep : sweeps_of(profile_, event)) {
      const size_t to = sweep.to_point;
      if (event.points[to - 1].intensity == 0 && event.points[to].intensity == 0) continue;
      const double off_hz = std::fabs(sweep.reached_hz() - sweep.to_hz);
      if (off_hz <= kFarFromPoint * sweep.to_hz) continue;
      const std::string way = sweep.reached_hz() < 0 ? text("runs through 0 Hz and back to %.0f", -sweep.reached_hz())
                                                     : text("reaches %.0f", sweep.reached_hz());
      warn(event, sweep.span.from,
           text("from point %zu to %zu its carrier %s Hz, not %.0f Hz", to, to + 1, way.c_str(), sweep.to_hz));
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
    if (std::abs(last) < kFarFromRest || starts_at(span.to)) return;
    warn(event, span.length(), text("ends far from rest, at amplitude %d", last));
  }

  // Whether the next event follows without a gap.
  bool starts_at(double ms) const {
    const auto& events = score_.events();
    const auto next =
        std::partition_point(events.begin(), events.end(), [&](const Event& event) { return event.start_ms < ms; });
    return next != events.end() && next->start_ms == ms;
  }

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
  for (const Event& event : score.events()) {
    if (!event.continuous) continue;
    const Waveform alone = event_waveform(score.profile(), event);
    for (size_t point = 1; point < 3; ++point) {
      const int64_t at = static_cast<int64_t>(score.profile().sample_rate / 1000) * event.point_ms(point);
      if (at < 1 || at >= alone.length) continue;
      uint8_t around[2];
      alone.read(at - 1, around);
      const int height = std::abs(amplitude(around[1]) - amplitude(around[0]));
      const double at_ms = event.start_ms + event.point_ms(point);
      if (height > largest.height) largest = {event.number, at_ms, height};
    }
  }
  return largest;
}

}  // namespace design
