// SPDX-License-Identifier: Apache-2.0
// What is drawn, measured and written: samples that can be read in windows, and what is to be said about them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "design/pattern/request.h"
#include "lrasynth.h"

namespace design {

// In milliseconds.
struct Span {
  double from;
  double to;

  double length() const { return to - from; }
  Span moved(double by) const { return {from + by, to + by}; }
};

constexpr bool overlap(Span a, Span b) { return a.from < b.to && b.from < a.to; }

// What is shown of a span that is asked for from and to; a 0 is its end.
inline Span part_of(Span whole, double from, double to) { return {from, to == 0 ? whole.to : std::min(to, whole.to)}; }

// A stretch of time that plots name and shade.
struct Section {
  Span span;
  std::string label;
  bool shaded;
  bool needs_room = true;  // for its name
};

// A sample code is an amplitude in two's complement.
constexpr int amplitude(uint8_t code) { return static_cast<int8_t>(code); }

struct Waveform {
  std::string title;
  lrasynth_profile profile;
  int64_t length;  // samples
  // Fills the window from that sample on, which lies inside the waveform.
  std::function<void(int64_t first, std::span<uint8_t> window)> read;
  std::vector<Section> sections = {};
  bool is_stream = false;  // the bytes of an event stream, which has no time axis, in place of samples

  double ms_of(int64_t sample) const { return static_cast<double>(sample) * 1000.0 / profile.sample_rate; }
  int64_t sample_at(double ms) const { return static_cast<int64_t>(ms * profile.sample_rate / 1000.0); }
  double length_ms() const { return ms_of(length); }
};

// Why a waveform of that length is refused; empty: it is not.
std::string length_fault(double length_ms);

// Has a waveform's samples from..to - 1 visited in blocks of a few ten thousand, as long as visit(first, codes) wants.
using Visitor = std::function<bool(int64_t first, std::span<const uint8_t> codes)>;
void for_blocks(const Waveform& waveform, int64_t from, int64_t to, const Visitor& visit);
inline void for_blocks(const Waveform& waveform, const Visitor& visit) {
  for_blocks(waveform, 0, waveform.length, visit);
}

// A tap of its own, at an intensity as it is driven. The profile's motor has taps.
Waveform tap_waveform(const lrasynth_profile& profile, int32_t level, int32_t driven_intensity);

// A sine burst of at most kLongestMs.
Waveform tone_waveform(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude);

// A part of an event of a score.
struct Heard {
  Span span;
  size_t event;
};

// A pattern laid out in time on a chip and motor. Its events are fitted to them, and without faults there.
class Score {
 public:
  Score(const lrasynth_profile& profile, const Playback& playback, std::vector<Event> events);

  // Why it cannot be served; nothing else is to be asked of it then.
  const std::optional<Fault>& fault() const { return request_.fault; }

  // Samples, or the bytes of an event stream.
  int64_t length() const { return length_; }
  double pass_ms() const { return pass_ms_; }
  double pass_start_ms(int64_t pass) const { return static_cast<double>(pass) * (pass_ms_ + playback_.interval_ms); }

  const lrasynth_profile& profile() const { return profile_; }
  const Playback& playback() const { return playback_; }
  const std::vector<Event>& events() const { return events_; }
  const Request& request() const { return request_; }
  const std::vector<Section>& sections() const { return sections_; }

  // From its start to its end in the first pass, and of that what no other event plays over.
  Span span_of(size_t event) const;
  const std::vector<Span>& heard(size_t event) const { return heard_[event]; }
  // The same, where taps are not counted as playing over vibrations.
  const std::vector<Span>& heard_in_layer(size_t event) const { return heard_in_layer_[event]; }
  // Of all events, in ascending time.
  std::vector<Heard> all_heard() const;

  void read(int64_t first, std::span<uint8_t> window) const;

 private:
  lrasynth_pattern pattern() const;
  void find_heard();
  void find_heard_of(bool taps, const std::vector<Span>& others, std::vector<Span>& covered);

  lrasynth_profile profile_;
  Playback playback_;
  std::vector<Event> events_;
  Request request_;
  std::vector<std::vector<Span>> heard_;
  std::vector<std::vector<Span>> heard_in_layer_;
  std::vector<Section> sections_;
  int64_t length_ = 0;
  double pass_ms_ = 0;
};

// A fitted event by itself, as a pattern plays it, from its start on.
Waveform event_waveform(const lrasynth_profile& profile, const Event& event);

// Whether no sample is anything but rest, which has two codes.
bool is_silent(const Waveform& waveform);

// Samples as people read them.
struct Strength {
  int peak;          // largest magnitude, in sample units
  double effective;  // root mean square
};

Strength strength_of(const Waveform& waveform);

}  // namespace design
