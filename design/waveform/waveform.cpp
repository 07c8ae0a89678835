// SPDX-License-Identifier: Apache-2.0
// Waveforms to be read in windows, and where the events of a pattern lie.
#include "design/waveform/waveform.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "design/base/length.h"
#include "design/base/motor.h"
#include "design/base/text.h"

namespace design {
namespace {

// What is left of a span beside others that are disjoint and ascending.
std::vector<Span> without(Span span, const std::vector<Span>& others) {
  std::vector<Span> left;
  auto other = std::partition_point(others.begin(), others.end(), [&](Span o) { return o.to <= span.from; });
  for (; other != others.end() && other->from < span.to; ++other) {
    if (other->from > span.from) left.push_back({span.from, other->from});
    span.from = std::max(span.from, other->to);
  }
  if (span.from < span.to) left.push_back(span);
  return left;
}

// Adds a span that starts before all others; these descend.
void add_before(Span span, std::vector<Span>& others) {
  while (!others.empty() && others.back().from <= span.to) {
    span.to = std::max(span.to, others.back().to);
    others.pop_back();
  }
  others.push_back(span);
}

}  // namespace

std::string length_fault(double length_ms) {
  return length_ms <= kLongestMs ? "" : text("the waveform may last %d ms at most", kLongestMs);
}

void for_blocks(const Waveform& waveform, int64_t from, int64_t to, const Visitor& visit) {
  std::vector<uint8_t> block(1U << 16U);
  for (int64_t first = from; first < to; first += static_cast<int64_t>(block.size())) {
    const int64_t count = std::min(static_cast<int64_t>(block.size()), to - first);
    const std::span<uint8_t> codes(block.data(), static_cast<size_t>(count));
    waveform.read(first, codes);
    if (!visit(first, codes)) return;
  }
}

Waveform tap_waveform(const lrasynth_profile& profile, int32_t level, int32_t driven_intensity) {
  const auto read = [=](int64_t first, std::span<uint8_t> window) {
    lrasynth_tap_read(&profile, level, driven_intensity, first, window.data(), static_cast<int64_t>(window.size()));
  };
  std::vector<Section> sections;
  double start_ms = 0;
  for (const TapSegment& segment : tap_segments(profile, level)) {
    const bool has_frequency = segment.name[0] != 'z';
    const std::string sound = segment.hz > 0 ? text(", %d Hz", segment.hz) : ", silent";
    const Span span = {start_ms, start_ms + segment.length_ms};
    sections.push_back({span, segment.name + (has_frequency ? sound : ""), sections.size() % 2 == 0});
    start_ms = span.to;
  }
  return {.title = {},
          .profile = profile,
          .length = tap_length(profile, level).samples,
          .read = read,
          .sections = std::move(sections)};
}

Waveform tone_waveform(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude) {
  const auto read = [=](int64_t first, std::span<uint8_t> window) {
    lrasynth_tone_read(&profile, frequency_hz, half_periods, amplitude, first, window.data(),
                       static_cast<int64_t>(window.size()));
  };
  const Length length = checked(lrasynth_tone_length(&profile, frequency_hz, half_periods));
  return {.title = {}, .profile = profile, .length = length.samples, .read = read};
}

Score::Score(const lrasynth_profile& profile, const Playback& playback, std::vector<Event> events)
    : profile_(profile),
      playback_(playback),
      events_(std::move(events)),
      request_(request_of(events_, profile, playback)),
      heard_(events_.size()),
      heard_in_layer_(events_.size()) {
  lrasynth_pattern once = pattern();
  once.loop_count = 1;
  const Length first = pattern_length(profile_, once);
  const Length all = pattern_length(profile_, pattern());
  if (!all.fault.empty() && !request_.fault) request_.fault = Fault{.what = "cannot be served: " + all.fault};
  if (request_.fault) return;
  pass_ms_ = 1000.0 * static_cast<double>(first.samples) / profile_.sample_rate;
  length_ = all.samples;
  find_heard();
  for (int32_t pass = 0; playback_.loops > 1 && pass < playback_.loops; ++pass) {
    const double start_ms = pass_start_ms(pass);
    if (pass > 0 && playback_.interval_ms > 0) {
      sections_.push_back({{start_ms - playback_.interval_ms, start_ms}, "gap", false});
    }
    sections_.push_back({{start_ms, start_ms + pass_ms_}, text("pass %d", pass + 1), true, false});
  }
}

lrasynth_pattern Score::pattern() const {
  return {.records = request_.integers.data(),
          .length = static_cast<int32_t>(request_.integers.size()),
          .loop_count = playback_.loops,
          .interval_ms = playback_.interval_ms,
          .limit_ms = playback_.limit_ms};
}

Span Score::span_of(size_t event) const {
  return {static_cast<double>(events_[event].start_ms), std::min(pass_ms_, events_[event].end_ms(profile_))};
}

std::vector<Heard> Score::all_heard() const {
  std::vector<Heard> all;
  for (size_t i = 0; i < events_.size(); ++i) {
    for (const Span& span : heard_[i]) all.push_back({span, i});
  }
  std::sort(all.begin(), all.end(), [](const Heard& a, const Heard& b) { return a.span.from < b.span.from; });
  return all;
}

// Later events of a layer play over earlier ones, and taps over everything. Events ascend, so that from the last to the
// first each starts before all that plays over it.
void Score::find_heard() {
  std::vector<Span> taps;  // descending
  find_heard_of(true, {}, taps);
  std::reverse(taps.begin(), taps.end());
  std::vector<Span> vibrations;
  find_heard_of(false, taps, vibrations);
}

// What is heard of taps, or of all else, under others, which ascend. Leaves what those of the layer cover, descending.
void Score::find_heard_of(bool taps, const std::vector<Span>& others, std::vector<Span>& covered) {
  for (size_t i = events_.size(); i-- > 0;) {
    if ((events_[i].tap() != nullptr) != taps) continue;
    const Span span = span_of(i);
    // Of the later ones of its layer only those matter that this one reaches.
    std::vector<Span> reached;
    for (size_t j = covered.size(); j-- > 0 && covered[j].from < span.to;) reached.push_back(covered[j]);
    heard_in_layer_[i] = without(span, reached);
    for (const Span part : heard_in_layer_[i]) {
      const std::vector<Span> parts = without(part, others);
      heard_[i].insert(heard_[i].end(), parts.begin(), parts.end());
    }
    add_before(span, covered);
  }
}

void Score::read(int64_t first, std::span<uint8_t> window) const {
  const lrasynth_pattern all = pattern();
  lrasynth_pattern_read(&profile_, &all, first, window.data(), static_cast<int64_t>(window.size()));
}

Waveform event_waveform(const lrasynth_profile& profile, const Event& event) {
  if (const Tap* const tap = event.tap()) {
    return tap_waveform(profile, tap->level, driven_intensity(profile, tap->level, tap->intensity));
  }
  std::vector<int32_t> integers;
  for (const Record& record : event.records()) integers.insert(integers.end(), record.begin(), record.end());
  const int64_t per_ms = profile.sample_rate / 1000;
  const int64_t start = per_ms * event.start_ms;
  const auto read = [profile, start, integers](int64_t first, std::span<uint8_t> window) {
    const lrasynth_pattern pattern = {integers.data(), static_cast<int32_t>(integers.size()), 1, 0, LRASYNTH_NO_LIMIT};
    lrasynth_pattern_read(&profile, &pattern, start + first, window.data(), static_cast<int64_t>(window.size()));
  };
  const auto length = static_cast<int64_t>(event.end_ms(profile)) * per_ms - start;
  return {.title = {}, .profile = profile, .length = length, .read = read};
}

bool is_silent(const Waveform& waveform) {
  constexpr uint8_t kRest = 255;
  bool silent = true;
  for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    const auto is_rest = [](uint8_t code) { return code == 0 || code == kRest; };
    return silent = std::all_of(codes.begin(), codes.end(), is_rest);
  });
  return silent;
}

Strength strength_of(const Waveform& waveform) {
  std::array<int64_t, 256> count = {};  // of each code
  for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    for (const uint8_t code : codes) ++count[code];
    return true;
  });
  Strength strength = {};
  double squares = 0;
  for (int code = 0; code < 256; ++code) {
    const int value = amplitude(static_cast<uint8_t>(code));
    squares += static_cast<double>(count[code]) * value * value;
    if (count[code] > 0) strength.peak = std::max(strength.peak, std::abs(value));
  }
  if (waveform.length > 0) strength.effective = std::sqrt(squares / static_cast<double>(waveform.length));
  return strength;
}

}  // namespace design
