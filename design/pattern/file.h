// SPDX-License-Identifier: Apache-2.0
// Patterns as people write them, in JSON: read with every fault and its place, and written in one canonical form.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "design/pattern/event.h"

namespace design {

constexpr size_t kLargestFile = 4U << 20U;  // bytes

// The events that have no fault, in ascending start, and the faults of all others.
struct PatternFile {
  std::vector<Event> events;
  Faults faults;
};

PatternFile read_pattern(std::string_view json);

// A line for each event, every field in the order of the documentation.
std::string canonical_json(const std::vector<Event>& events);

// The form of a file, for people.
constexpr const char* kPatternHelp = R"(FILE:
  {"events": [
    {"type": "transient", "start": 0, "intensity": 80, "level": 50},
    {"type": "continuous", "start": 40, "duration": 400,
     "points": [[0, 20, -20], [100, 100, 0], [300, 80, 10], [400, 0, 0]]}
  ]}
  A transient is a tap: of an intensity (percent, 0..100) and a level (its character: from 0, dull, over 50, the motor's
  resonance, to 100, crisp). A continuous event is a vibration along four points of time, intensity (percent, 0..100)
  and frequency offset (-50..50, steps of a motor's own curve around its resonance at 0; sheet draws it).

  Times are whole milliseconds: starts and point times 0..600000, durations 1..600000; 4096 and 4097 stand for events
  and are taken for nothing else. Point times span the duration and need not begin at 0. All passes and gaps together
  last 600000 ms at most, and a file has 4 MiB at most. Comments (// and /* */) are passed over.

  Events may stand in any order. Taps play over vibrations; of two events of one kind, the one that starts later plays.
  With --chip 11 the output is the event stream, of 64 MiB at most: .bin, or .csv to read it.

)";

}  // namespace design
