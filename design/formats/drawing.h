// SPDX-License-Identifier: Apache-2.0
// Between our events and files from elsewhere: what either means, in times and strengths that are not yet rounded.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "design/base/fault.h"
#include "design/base/motor.h"

namespace design {

struct DrawnTap {
  double ms = 0;        // from the pattern's start
  double strength = 0;  // as the motor is driven, 0..100
  double level = 0;     // 0..100
};

struct DrawnPoint {
  double ms = 0;         // from the pattern's start
  double intensity = 0;  // 0..100
  double offset = 0;     // -50..50
  double hz = 0;         // in place of the offset, where it is above 0; of a curve all points have it, or none
};

// Two points or more, of which the times do not decrease. Straight from point to point; two of one time are a step.
using DrawnCurve = std::vector<DrawnPoint>;

// What others call sharpness, 0..1, is a place on the motor's range of offsets, and a tap's level.
constexpr double offset_of_sharpness(double sharpness) { return 100 * (sharpness - 0.5); }
constexpr double sharpness_of_offset(double offset) { return offset / 100 + 0.5; }

// What a form cannot say, a line for each kind of it.
class Losses {
 public:
  // "1 audio event is left out", "3 audio events are left out"
  void add(const std::string& thing, const std::string& fate, int64_t count = 1);
  // A line of its own, once.
  void say(const std::string& line) { add("", line); }

  // In the order in which the kinds were first told of.
  std::vector<std::string> lines() const;

 private:
  struct Kind {
    std::string thing;  // empty: the fate is the whole line
    std::string fate;
    int64_t count;
  };

  std::vector<Kind> kinds_;
};

// A point between two others of a curve, as it plays on a motor, where hertz and amplitude run straight; of none, where
// offset and intensity do. It may be beyond full strength, since the motor's gain may be less there.
DrawnPoint between(const DrawnPoint& from, const DrawnPoint& to, double ms, const Tuning* tuning);

// Points beyond full strength to that.
void hold(DrawnCurve& curve, Losses& losses);

constexpr double kBesideMs = 1;

// A curve with points at some times in it, which ascend, and a millisecond before and behind each: what is bent there
// bends nothing else.
DrawnCurve with_points_beside(const DrawnCurve& curve, const std::vector<double>& times_ms, const Tuning* tuning);

struct Drawing {
  std::vector<DrawnTap> taps = {};
  std::vector<DrawnCurve> curves = {};
  const Tuning* tuning = nullptr;  // of the motor that plays it, if it is to be written
  Losses losses = {};
  Faults faults = {};  // with their places in what was read; nothing else is of use where there are any

  // From a time on and before another, where taps ascend.
  std::span<const DrawnTap> taps_in(double from_ms, double to_ms) const;

  void fault(Place place, std::string what) { faults.add({{}, place, std::move(what)}); }
};

// In whole milliseconds, steps and places, with as few points as stay within 1 of 100 of all of them.
DrawnCurve simplified(const DrawnCurve& curve);

// As a pattern file of ours, in ascending start. Times become whole milliseconds; points that fall together are one,
// the last of them, and where that makes a step, the line before it ends a millisecond earlier; points are left out
// where the line stays within 1 of 100, and goes no farther than 10 steps, in which gains hardly bend. Rest, of which
// no curve sounds, is no event. What lies beyond the longest pattern, or is more than a file may have, is a fault of
// the drawing.
std::string pattern_json(Drawing& drawing);

}  // namespace design
