// SPDX-License-Identifier: Apache-2.0
// Drawings as times of on and off.
#include "design/formats/on_off.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "design/base/text.h"

namespace design {
namespace {

// What browsers take.
constexpr size_t kMostTimes = 99;
constexpr int64_t kLongestTimeMs = 10'000;

constexpr int64_t kTapMs = 20;

struct Span {
  int64_t from_ms;
  int64_t to_ms;
};

// When anything sounds, in ascending order and apart.
std::vector<Span> spans_of(const Drawing& drawing) {
  std::vector<Span> spans;
  for (const DrawnTap& tap : drawing.taps) {
    const int64_t ms = std::llround(tap.ms);
    if (tap.strength > 0) spans.push_back({ms, ms + kTapMs});
  }
  for (const DrawnCurve& curve : drawing.curves) {
    for (size_t i = 1; i < curve.size(); ++i) {
      const Span span = {std::llround(curve[i - 1].ms), std::llround(curve[i].ms)};
      const bool sounds = curve[i - 1].intensity > 0 || curve[i].intensity > 0;
      if (sounds && span.from_ms < span.to_ms) spans.push_back(span);
    }
  }
  std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.from_ms < b.from_ms; });
  std::vector<Span> apart;
  for (const Span& span : spans) {
    if (apart.empty() || apart.back().to_ms < span.from_ms) {
      apart.push_back(span);
    } else {
      apart.back().to_ms = std::max(apart.back().to_ms, span.to_ms);
    }
  }
  return apart;
}

// On first. A time that is too long goes on behind nothing of the other kind.
std::vector<int64_t> times_of(const std::vector<Span>& spans) {
  std::vector<int64_t> times;
  const auto add = [&](int64_t ms) {
    for (; ms > kLongestTimeMs; ms -= kLongestTimeMs) times.insert(times.end(), {kLongestTimeMs, 0});
    times.push_back(ms);
  };
  int64_t cursor_ms = 0;
  for (const Span& span : spans) {
    if (cursor_ms < span.from_ms) {
      if (times.empty()) times.push_back(0);
      add(span.from_ms - cursor_ms);
    }
    add(span.to_ms - span.from_ms);
    cursor_ms = span.to_ms;
  }
  return times;
}

}  // namespace

std::string write_on_off(const Drawing& drawing, Losses& losses) {
  std::vector<int64_t> times = times_of(spans_of(drawing));
  if (!times.empty()) losses.say("strength and frequency are lost");
  if (times.size() > kMostTimes) {
    losses.say(text("what lies behind %zu times of on and off is left out", kMostTimes));
    times.resize(kMostTimes);
    // An end in rest is none.
    while (!times.empty() && (times.size() % 2 == 0 || times.back() == 0)) times.pop_back();
  }
  std::string json;
  for (const int64_t ms : times) json += text("%s%lld", json.empty() ? "" : ",", static_cast<long long>(ms));
  return "[" + json + "]\n";
}

}  // namespace design
