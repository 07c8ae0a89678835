// One waveform in its axes: the panel that the single plot and the contact sheet are made of.
#pragma once

#include "svg.h"
#include "waveform.h"

namespace lrasynth {

// Grid, zero line and labels of a panel whose time axis is 0..length_ms. Amplitudes are always on the full scale.
Scale draw_axes(Svg& picture, const Box& box, double length_ms);

// The curve on the same scales.
void draw_curve(Svg& picture, const Box& box, const Scale& time, const Waveform& waveform);

}  // namespace lrasynth
