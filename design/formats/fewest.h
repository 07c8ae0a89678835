// SPDX-License-Identifier: Apache-2.0
// Curves through a course of amplitudes and places, with as few points as bounds allow.
#pragma once

#include <cstdint>
#include <span>

#include "design/base/motor.h"
#include "design/formats/drawing.h"

namespace design {

// What a curve is to play at a time.
struct Passage {
  int32_t ms = 0;
  float amplitude = 0;  // 1: full scale
  float least = 0;      // bounds of the amplitude
  float most = 0;
  float hz = 0;
  float near_hz = 0;  // how far lines may pass from it
};

// A curve, and what it falls short of: more than the motor plays at a frequency is reached from points beside it, or
// not at all.
struct FittedCurve {
  DrawnCurve curve;
  size_t short_of = 0;  // so many passages
  float shortest = 1;   // the least part of an amplitude that is played
};

// Two passages or more of ascending time. Lines run straight from amplitude to amplitude, and from hertz to hertz
// within bounds, or as near as the motor has them.
FittedCurve fewest_points(std::span<const Passage> passages, const Tuning& tuning);

}  // namespace design
