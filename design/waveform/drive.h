// SPDX-License-Identifier: Apache-2.0
// Events that say how strongly they are to be felt become events that say how strongly they are driven.
#pragma once

#include <cstdint>
#include <vector>

#include "design/pattern/event.h"
#include "design/waveform/response.h"

namespace design {

// What a motor cannot make felt as it is asked: then it is driven as strongly as it may be.
struct Unreached {
  EventName event;
  double at_ms;    // of the pattern
  size_t point;    // from 1; 0: a tap
  int32_t asked;   // percent felt
  double reached;  // likewise
};

// Of all events that ask for it; they are to be fitted then. No strength exceeds 100 %.
//
// A tap gets the strength with which it is felt as asked where it plays alone. A curve's points get those of tones that
// last, and between them stand others, where a line of amplitudes would leave the line of levels by more than 1 dB.
std::vector<Unreached> drive(std::vector<Event>& events, const lrasynth_profile& profile, const Resonator& resonator);

// The other way: taps and curves ask to be felt as they are now, on a motor that they are fitted to. Points stand
// between those of a curve where a line of levels would leave the one of amplitudes by more than 1 dB. Returns how many
// strengths are kept to 100 %.
int64_t ask_as_felt(std::vector<Event>& events, const lrasynth_profile& profile, const Resonator& resonator);

}  // namespace design
