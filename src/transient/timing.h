// SPDX-License-Identifier: Apache-2.0
// Timing model of the four-segment transient: what each level's segments are, and how long.
#pragma once

#include <cstdint>

#include "profile/profile.h"

namespace lrasynth {

struct SegmentShape {
  int32_t hz;
  float cycles;
  int32_t amplitude = 0;  // percent of 255
};

// How offset values become codes: coded, then truncated, or truncated first.
enum class TransientCoding { kCodeFirst, kTruncateFirst };

// In time order.
struct TransientShape {
  SegmentShape drive;
  float zero_ms;
  SegmentShape f1;
  SegmentShape f2;
  bool f2_mirrored = false;
  TransientCoding coding = TransientCoding::kTruncateFirst;
};

// Whether a level's tap has the mid-level shape, or the edge-level one. Any level can be had in either.
bool is_mid_level(int32_t level);
TransientShape mid_shape(int32_t drive_hz, int32_t level, int32_t intensity);
TransientShape edge_shape(int32_t drive_hz, int32_t level, int32_t intensity);

// The mid-level shape with segments of its own; amplitudes are those of drive, F1 and F2.
TransientShape custom_mid_shape(int32_t drive_hz, int32_t f1_hz, int32_t f2_hz, float zero_ms, int32_t amplitude = 0,
                                int32_t f1_amplitude = 0, int32_t f2_amplitude = 0);

// Samples of a zero time, not truncated.
float zero_samples(Rate rate, float zero_ms);

// Samples of the whole transient, negative where cycles or times are; 0 without a positive drive frequency.
int32_t transient_length(Rate rate, const TransientShape& shape);

}  // namespace lrasynth
