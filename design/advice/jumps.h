// SPDX-License-Identifier: Apache-2.0
// Where a pattern's samples jump: at the points of its curves, and where one event ends or another begins.
#pragma once

#include <cstdint>
#include <vector>

#include "design/waveform/waveform.h"

namespace design {

struct Jump {
  static constexpr size_t kRest = SIZE_MAX;  // in place of an event

  int64_t sample = 0;   // behind it
  int height = 0;       // in sample units
  size_t from = kRest;  // events heard before and behind it, by index
  size_t to = kRest;
  bool is_restart = false;  // of the phase at a point, which is in the nature of every curve
};

// All of the first pass and of its end, in ascending time. The end of the last pass is followed by rest.
std::vector<Jump> jumps_of(const Score& score);

// The highest; one of height 0 where there is none.
Jump largest_of(const std::vector<Jump>& jumps);

}  // namespace design
