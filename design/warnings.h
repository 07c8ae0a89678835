// SPDX-License-Identifier: Apache-2.0
// What a designer can and would avoid in a waveform, found before a phone plays it.
#pragma once

#include <string>
#include <vector>

#include "design/waveform.h"

namespace design {

struct Warning {
  int32_t event = 0;  // its number in its file; 0: none in particular
  double at_ms = 0;   // in the first pass
  std::string what;
};

// "event 2 at 40 ms: ..."
std::string line_of(const Warning& warning);

// Of a tap of its own, as it is asked for.
std::vector<Warning> warnings_of_tap(const lrasynth_profile& profile, int32_t level, int32_t intensity);

std::vector<Warning> warnings_of_tone(const Waveform& tone, int32_t amplitude);

// In ascending time.
std::vector<Warning> warnings_of(const Score& score);

// Every curve restarts its phase at each point, where the waveform may jump. Not a warning: it is their nature.
struct Jump {
  int32_t event = 0;  // 0: there is none
  double at_ms = 0;
  int height = 0;  // in sample units
};

Jump largest_restart(const Score& score);

}  // namespace design
