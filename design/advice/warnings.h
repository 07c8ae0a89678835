// SPDX-License-Identifier: Apache-2.0
// What a designer can and would avoid in a waveform, found before a phone plays it.
#pragma once

#include <string>
#include <vector>

#include "design/advice/jumps.h"
#include "design/waveform/waveform.h"

namespace design {

struct Warning {
  EventName event = {};
  double at_ms = 0;       // in the first pass
  std::string what;       // with the remedy, where there is one
  std::string kind = {};  // of which many may be told as one; empty: what it says
  bool is_felt = false;   // rests on an estimate, with a resonator
};

// "event 2 at 40 ms: ..."
std::string line_of(const Warning& warning);

// A line for each, those that say the same as one ("in 1,200 events, ..."), of more than four also those of one kind;
// so many lines at most, and a last one that counts the warnings that are left.
constexpr size_t kMostWarningsListed = 20;
std::vector<std::string> lines_of(const std::vector<Warning>& warnings, size_t most = kMostWarningsListed);

// Of a tap of its own, as it is asked for and as it is driven.
std::vector<Warning> warnings_of_tap(const lrasynth_profile& profile, int32_t level, int32_t intensity,
                                     bool in_pattern);

std::vector<Warning> warnings_of_tone(const Waveform& tone, int32_t amplitude);

// Of a pattern with its jumps, in ascending time.
std::vector<Warning> warnings_of(const Score& score, const std::vector<Jump>& jumps);

}  // namespace design
