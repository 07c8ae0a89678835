// SPDX-License-Identifier: Apache-2.0
// A grid with a curve in it: what the single plot and the contact sheet are made of.
#pragma once

#include <string>
#include <vector>

#include "svg.h"
#include "waveform.h"

namespace command {

// A range of values with a grid line at every multiple of step.
struct Axis {
  double from;
  double to;
  double step;
};

constexpr Axis kAmplitudeAxis = {-128, 128, 64};

// From 0, with as many grid lines as a panel of that width has room to label.
Axis time_axis(double length_ms, double width);

// Where a plot stands on the picture, and the values that it spans.
struct Panel {
  Box box;
  Axis x;
  Axis y;

  // The place of a pair of values.
  Point at(double x_value, double y_value) const;
};

// Below everything else in the panel; the labels stand outside and may be left out where panels share an axis.
void draw_grid(Svg& picture, const Panel& panel);
void label_x(Svg& picture, const Panel& panel, const std::string& quantity);
void label_y(Svg& picture, const Panel& panel);

// The waveform over milliseconds; one that has many samples per pixel keeps the extremes of each pixel.
void draw_waveform(Svg& picture, const Panel& panel, const Waveform& waveform);

}  // namespace command
