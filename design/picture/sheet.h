// SPDX-License-Identifier: Apache-2.0
// Pictures of several waveforms: the character of a motor, and a comparison.
#pragma once

#include <string>
#include <vector>

#include "design/advice/piece.h"
#include "design/waveform/felt.h"
#include "design/waveform/response.h"

namespace design {

// Taps of several levels below one another on the same scales, where the motor has taps, and its curves over the
// frequency offset.
struct Sheet {
  lrasynth_profile profile;
  std::vector<int32_t> levels;
  int32_t intensity;
  bool in_pattern;         // taps as weak as a pattern plays them
  std::string title = {};  // empty: what it shows
};

std::string title_of(const Sheet& sheet);
std::string sheet_of(const Sheet& sheet);

// Waveforms on one axis of time, each with its motion and what is felt, and the numbers beside them.
std::string comparison_of(const std::string& title, const std::vector<Piece>& pieces,
                          const std::vector<Motion>& motions, const std::vector<Felt>& felts, Span shown);

}  // namespace design
