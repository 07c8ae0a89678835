// Timing model of the four-segment transient: what each level's segments are, and how long.
#pragma once

#include <cstdint>

#include "profile/profile.h"

namespace lrasynth {

// Drive, zero time, F1, F2.
struct TransientShape {
  int32_t drive_hz;
  int32_t f1_hz;
  int32_t f2_hz;
  float drive_cycles;
  float f1_cycles;
  float f2_cycles;
  float zero_ms;
};

// Which of the two shapes a level's tap has; a level can be had in either.
bool is_mid_level(int32_t level);
TransientShape mid_shape(int32_t drive_hz, int32_t level);
TransientShape edge_shape(int32_t drive_hz, int32_t level);

// The mid-level shape with segments of its own.
TransientShape mid_shape(int32_t drive_hz, int32_t f1_hz, int32_t f2_hz, float zero_ms);

// Amplitudes of the F1 and F2 segments: fortieths of the intensity, computed in 64 bits; 0 at edge levels.
int32_t f1_amplitude(int32_t level, int32_t intensity);
int32_t f2_amplitude(int32_t level, int32_t intensity);

// Samples of a zero time, not truncated.
float zero_samples(Rate rate, float zero_ms);

// Samples of the whole transient, negative where cycles or times are; 0 without a positive drive frequency.
int32_t transient_length(Rate rate, const TransientShape& shape);

}  // namespace lrasynth
