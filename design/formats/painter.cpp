// SPDX-License-Identifier: Apache-2.0
// What plays of a pattern, in the terms of other formats.
#include "design/formats/painter.h"

#include <algorithm>
#include <cmath>

#include "design/base/text.h"
#include "design/waveform/stretch.h"

namespace design {
namespace {

DrawnCurve part_of(const DrawnCurve& curve, Span span, const Tuning& tuning) {
  DrawnCurve part;
  for (size_t i = 0; i < curve.size(); ++i) {
    const bool is_new = i > 0 && curve[i - 1].ms < curve[i].ms;
    for (const double edge : {span.from, span.to}) {
      if (is_new && edge > curve[i - 1].ms && edge < curve[i].ms)
        part.push_back(between(curve[i - 1], curve[i], edge, &tuning));
    }
    if (curve[i].ms >= span.from && curve[i].ms <= span.to) part.push_back(curve[i]);
  }
  return part;
}

DrawnCurve curve_of(const Curve& curve, int32_t start_ms) {
  DrawnCurve drawn;
  const int32_t first_ms = curve.points.front().ms;
  for (const CurvePoint& point : curve.played()) {
    drawn.push_back({1.0 * start_ms + point.ms - first_ms, 1.0 * point.intensity, 1.0 * point.offset});
  }
  return drawn;
}

class Painter {
 public:
  Painter(const Score& score, const Tuning& tuning, Losses& losses) : score_(score), losses_(losses), tuning_(tuning) {
    once_.tuning = &tuning;
  }

  Drawing paint() {
    for (size_t i = 0; i < score_.events().size(); ++i) {
      const Event& event = score_.events()[i];
      event.tap() != nullptr ? add_tap(event) : add_curve(i, event);
    }
    const auto starts_before = [](const DrawnCurve& a, const DrawnCurve& b) { return a.front().ms < b.front().ms; };
    std::stable_sort(once_.curves.begin(), once_.curves.end(), starts_before);
    return repeated();
  }

 private:
  void add_tap(const Event& event) {
    const Tap& tap = *event.tap();
    const int32_t driven = tap.driven_on(score_.profile());
    if (driven == 0) return losses_.add("tap", "left out, being silent");
    once_.taps.push_back({1.0 * event.start_ms, std::min(100.0, 1.0 * driven), 1.0 * tap.level});
  }

  void add_curve(size_t i, const Event& event) {
    const bool is_curve = event.curve() != nullptr;
    const DrawnCurve whole =
        is_curve ? curve_of(*event.curve(), event.start_ms) : curve_of_record(score_.profile(), event, tuning_);
    if (!is_curve) losses_.add("record", "turned into curves");
    if (is_curve) note_hertz(*event.curve());
    const std::vector<Span>& parts = score_.heard_in_layer(i);
    const Span all = score_.span_of(i);
    const bool is_cut = parts.size() != 1 || parts[0].from != all.from || parts[0].to != all.to;
    if (is_cut) losses_.add("vibration", "cut where another plays over it");
    for (const Span& span : parts) {
      DrawnCurve part = is_cut ? part_of(whole, span, tuning_) : whole;
      hold(part, losses_);
      if (part.size() > 1 && part.front().ms < part.back().ms) once_.curves.push_back(std::move(part));
    }
  }

  void note_hertz(const Curve& curve) {
    const auto is_moved = [&](const CurvePoint& point) {
      return point.asked_hz > 0 && std::fabs(tuning_.hertz(point.offset) - point.asked_hz) > near_hz(point.asked_hz);
    };
    losses_.add("point", "given the nearest hertz that the motor plays",
                std::count_if(curve.points.begin(), curve.points.end(), is_moved));
  }

  Drawing repeated() {
    const int32_t loops = score_.playback().loops;
    if (loops == 1) return std::move(once_);
    if (static_cast<size_t>(loops) * score_.events().size() > kMostEvents) {
      losses_.say(text("it plays once, not %d times", loops));
      return std::move(once_);
    }
    Drawing all = {.tuning = &tuning_};
    for (int32_t pass = 0; pass < loops; ++pass) {
      const double start_ms = score_.pass_start_ms(pass);
      for (DrawnTap tap : once_.taps) {
        tap.ms += start_ms;
        all.taps.push_back(tap);
      }
      for (DrawnCurve curve : once_.curves) {
        for (DrawnPoint& point : curve) point.ms += start_ms;
        all.curves.push_back(std::move(curve));
      }
    }
    return all;
  }

  const Score& score_;
  Losses& losses_;
  const Tuning& tuning_;
  Drawing once_;
};

}  // namespace

Drawing painted(const Score& score, const Tuning& tuning, Losses& losses) {
  return Painter(score, tuning, losses).paint();
}

DrawnCurve curve_of_record(const lrasynth_profile& profile, const Event& record, const Tuning& tuning) {
  constexpr double kStepMs = 5;
  DrawnCurve drawn;
  for (const Stretch& stretch : stretches_of(profile, record)) {
    const auto add = [&](double ms) {
      const int32_t offset = tuning.nearest(std::fabs(stretch.hz_at(ms)));
      const double intensity = 100 * std::fabs(stretch.amplitude_at(ms)) / tuning.full(offset);
      drawn.push_back({record.start_ms + ms, std::min(100.0, intensity), 1.0 * offset});
    };
    for (double ms = stretch.span.from; ms < stretch.span.to; ms += kStepMs) add(ms);
    add(stretch.span.to);
  }
  return drawn.empty() ? drawn : simplified(drawn);
}

}  // namespace design
