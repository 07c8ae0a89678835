// SPDX-License-Identifier: Apache-2.0
// Values over time in straight lines, as other forms give intensity and sharpness apart from each other.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "design/formats/drawing.h"

namespace design {

// To the nanosecond, so that sums of one time are one number.
inline double exact_ms(double ms) { return std::round(ms * 1e6) / 1e6; }

class ValueLine {
 public:
  struct Point {
    double ms;
    double value;
  };

  // With this value before its first point.
  explicit ValueLine(double before) : before_(before) {}

  // Goes on to this point, which lies at the last one or behind it.
  void to(double ms, double value) { points_.push_back({ms, value}); }
  // Goes to this value at once and has it from then on, whatever was to come.
  void step(double ms, double value);

  // Before and behind a step at that time.
  double left(double ms) const;
  double right(double ms) const;

  // What runs from..to, each value times a factor plus a summand.
  ValueLine part(double from_ms, double to_ms, double times, double plus) const;

  const std::vector<Point>& points() const { return points_; }

 private:
  double between(size_t next, double ms) const;

  double before_;
  std::vector<Point> points_;
};

// The line's points with these between them, each of which it reaches and leaves within a millisecond. Both ascend.
std::vector<ValueLine::Point> with_peaks(const ValueLine& line, const std::vector<ValueLine::Point>& peaks);

// A curve from intensities (0..1) and places on the motor's range over time, with a point wherever either has one.
// A place is a sharpness, cut to 0..1 and with points where that cuts it, or hertz.
DrawnCurve curve_of(const ValueLine& intensity, const ValueLine& place, double from_ms, double to_ms,
                    bool is_hz = false);

}  // namespace design
