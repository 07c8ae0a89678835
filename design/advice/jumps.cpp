// SPDX-License-Identifier: Apache-2.0
// The jumps of a pattern, measured in its samples.
#include "design/advice/jumps.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace design {
namespace {

struct Part {
  int64_t from;  // samples
  int64_t to;
  size_t event;
};

// What is heard in the first pass, in ascending time, and what follows on it.
std::vector<Part> parts_of(const Score& score) {
  std::vector<Part> heard;
  const auto sample_at = [&](double ms) { return std::llround(ms * score.profile().sample_rate / 1000.0); };
  for (const Heard& one : score.all_heard()) {
    heard.push_back({sample_at(one.span.from), sample_at(one.span.to), one.event});
  }
  const bool goes_on = score.playback().loops > 1 && score.playback().interval_ms == 0 && !heard.empty();
  if (goes_on && heard.front().from == 0) {
    const int64_t pass = sample_at(score.pass_ms());
    heard.push_back({pass, pass, heard.front().event});
  }
  return heard;
}

void add_restarts(const Score& score, const Part& heard, std::vector<Jump>& jumps) {
  const Event& event = score.events()[heard.event];
  for (const auto& [since_ms, vibration] : event.parts()) {
    for (size_t point = 0; point < 3; ++point) {
      const int64_t ms = int64_t{event.start_ms} + since_ms + vibration.point_ms(point);
      const int64_t at = score.profile().sample_rate / 1000 * ms;
      const bool is_new = jumps.empty() || jumps.back().sample != at;
      if (heard.from < at && at < heard.to && is_new) {
        jumps.push_back({.sample = at, .from = heard.event, .to = heard.event, .is_restart = true});
      }
    }
  }
}

// Reads the samples around each, many at once.
void measure(const Score& score, std::vector<Jump>& jumps) {
  std::vector<uint8_t> codes(1U << 16U);
  for (size_t i = 0; i < jumps.size();) {
    const int64_t first = std::max<int64_t>(0, jumps[i].sample - 1);
    const int64_t count = std::min(static_cast<int64_t>(codes.size()), score.length() - first);
    if (count > 0) score.read(first, std::span(codes).first(static_cast<size_t>(count)));
    const auto amplitude_at = [&](int64_t sample) {
      const bool inside = sample >= first && sample < first + count;
      return inside ? amplitude(codes[static_cast<size_t>(sample - first)]) : 0;
    };
    do {
      jumps[i].height = std::abs(amplitude_at(jumps[i].sample) - amplitude_at(jumps[i].sample - 1));
    } while (++i < jumps.size() && jumps[i].sample < first + static_cast<int64_t>(codes.size()));
  }
}

}  // namespace

std::vector<Jump> jumps_of(const Score& score) {
  std::vector<Jump> jumps;
  const std::vector<Part> heard = parts_of(score);
  for (size_t i = 0; i < heard.size(); ++i) {
    const bool follows = i > 0 && heard[i - 1].to == heard[i].from;
    jumps.push_back(
        {.sample = heard[i].from, .from = follows ? heard[i - 1].event : Jump::kRest, .to = heard[i].event});
    add_restarts(score, heard[i], jumps);
    const bool is_followed = i + 1 < heard.size() && heard[i + 1].from == heard[i].to;
    const bool ends = heard[i].to > heard[i].from;
    if (ends && !is_followed) jumps.push_back({.sample = heard[i].to, .from = heard[i].event, .to = Jump::kRest});
  }
  std::stable_sort(jumps.begin(), jumps.end(), [](const Jump& a, const Jump& b) { return a.sample < b.sample; });
  measure(score, jumps);
  return jumps;
}

Jump largest_of(const std::vector<Jump>& jumps) {
  const auto lower = [](const Jump& a, const Jump& b) { return a.height < b.height; };
  const auto found = std::max_element(jumps.begin(), jumps.end(), lower);
  return found == jumps.end() ? Jump() : *found;
}

}  // namespace design
