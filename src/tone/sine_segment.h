// SPDX-License-Identifier: Apache-2.0
// The sine segment: the piece that transients are made of and that `get_sine` renders.
#pragma once

#include <cstdint>

#include "tone/time_grid.h"

namespace lrasynth {

class SineSegment {
 public:
  SineSegment() = default;  // of no samples

  // Amplitude in percent of 255. A mirrored segment is turned upside down about rest.
  SineSegment(Rate rate, int32_t frequency_hz, float cycles, int32_t amplitude, bool mirrored = false);

  int32_t count() const { return grid_.count; }

  float exact(int32_t i) const;
  void estimate(int32_t first, int32_t n, float* offsets) const;
  float error(int32_t last) const;
  bool silent() const { return peak_ == 0.0F; }

 private:
  TimeGrid grid_;
  double angular_ = 0;  // radians per second
  float peak_ = 0;      // sample units
  bool mirrored_ = false;
};

}  // namespace lrasynth
