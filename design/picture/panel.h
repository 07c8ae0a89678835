// SPDX-License-Identifier: Apache-2.0
// A grid with curves in it: what all pictures are made of.
#pragma once

#include <string>

#include "design/picture/svg.h"
#include "design/waveform/felt.h"
#include "design/waveform/response.h"
#include "design/waveform/waveform.h"

namespace design {

// A range of values with a grid line at every multiple of step. Labels are in units of so many of the values.
struct Axis {
  double from;
  double to;
  double step;
  double unit = 1;
};

constexpr Axis kAmplitudeAxis = {-128, 128, 64};

// With as many grid lines as a panel of that width has room to label, in seconds where they are many.
Axis time_axis(Span span_ms, double width);
const char* time_words(const Axis& axis);

// Where a plot stands on the picture, and the values that it spans.
struct Panel {
  Box box;
  Axis x;
  Axis y;

  // The place of a pair of values.
  Point at(double x_value, double y_value) const;
  double x_at(double value) const { return at(value, y.from).x; }
  Span span() const { return {x.from, x.to}; }
};

// Below everything else in the panel; the labels stand outside and may be left out where panels share an axis.
void draw_grid(Svg& picture, const Panel& panel);
void label_x(Svg& picture, const Panel& panel, const std::string& quantity);
void label_y(Svg& picture, const Panel& panel);

// The waveform over milliseconds; one that has many samples per pixel keeps the extremes of each pixel.
void draw_waveform(Svg& picture, const Panel& panel, const Waveform& waveform);

// The estimated displacement, `full` of which reaches the top: a soft band, to be drawn before the waveform. It runs
// from rest to the displacement, or, where single swings cannot be seen, from the lowest to the highest.
void draw_response(Svg& picture, const Panel& panel, const Motion& motion, double full);

// With room for that level, and for 100 % in any case.
Axis felt_axis(double strongest);

// Levels over time; where there are several to a pixel the strongest of them.
void draw_felt(Svg& picture, const Panel& panel, const Felt& felt);

}  // namespace design
