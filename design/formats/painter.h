// SPDX-License-Identifier: Apache-2.0
// What plays of a pattern, in the terms of other formats.
#pragma once

#include "design/formats/drawing.h"
#include "design/waveform/waveform.h"

namespace design {

// All passes, on the tuning's motor, which the drawing refers to. Taps and curves ascend, and no two curves overlap.
// The chip renders samples.
Drawing painted(const Score& score, const Tuning& tuning, Losses& losses);

// Of what a record plays, which is not what its points say.
DrawnCurve curve_of_record(const lrasynth_profile& profile, const Event& record, const Tuning& tuning);

}  // namespace design
