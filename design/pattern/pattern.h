// SPDX-License-Identifier: Apache-2.0
// Patterns as people write them, in JSON: read with every fault and its place, written in one canonical form, and
// turned into the integers of a request.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lrasynth.h"

namespace design {

constexpr int32_t kLongestMs = 600'000;  // of a waveform, an event, a gap

// In a text, both from 1, a column for each character; 0 where there is no place to name.
struct Place {
  size_t line = 0;
  size_t column = 0;
};

struct CurvePoint {
  int32_t time_ms = 0;
  int32_t intensity = 0;
  int32_t offset = 0;
};

struct Event {
  int32_t number = 0;  // in its file, from 1
  Place place = {};
  bool continuous = false;
  int32_t start_ms = 0;
  int32_t intensity = 0;  // of a transient
  int32_t level = 0;
  int32_t duration_ms = 0;  // of a continuous vibration
  std::array<CurvePoint, 4> points = {};

  // Of a point, from the event's start.
  int32_t point_ms(size_t point) const { return points[point].time_ms - points[0].time_ms; }
};

// How often a pattern plays, and the latest start of a continuous vibration.
struct Playback {
  int32_t loops = 1;
  int32_t interval_ms = 0;
  int32_t limit_ms = LRASYNTH_NO_LIMIT;
};

struct Fault {
  int32_t event = 0;  // its number; 0: none in particular
  Place place = {};
  std::string what;
};

// "3:12: event 1: level: ...", with the file's name before it.
std::string line_of(const Fault& fault, const std::string& file);

// The faults of a file as far as anybody reads on, and how many there are.
struct Faults {
  static constexpr size_t kMostListed = 20;

  void add(Fault fault);
  // A line for each, and one for those that are not listed.
  std::vector<std::string> lines(const std::string& file) const;

  std::vector<Fault> listed;
  size_t count = 0;
};

// The events that have no fault, in ascending start, and the faults of all others.
struct PatternFile {
  std::vector<Event> events;
  Faults faults;
};

constexpr size_t kLargestFile = 4U << 20U;  // bytes

PatternFile read_pattern(std::string_view json);

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
  last 600000 ms at most, and a file has 4 MiB at most. Comments (// to the end of a line) are passed over.

  Events may stand in any order. Taps play over vibrations; of two events of one kind, the one that starts later plays.
  With --chip 11 the output is the event stream, of 64 MiB at most: .bin, or .csv to read it.

)";

// What else is wrong with events on this chip and motor.
void add_faults(const std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback,
                Faults& faults);

// A line for each event, every field in the order of the documentation.
std::string canonical_json(const std::vector<Event>& events);

// The 17 integers of an event's record.
std::array<int32_t, LRASYNTH_RECORD_LENGTH> record_of(const Event& event);

// When an event ends on this chip and motor.
double end_ms(const Event& event, const lrasynth_profile& profile);

// The records as the profile's chip needs them, and how they end a pass of samples.
struct Request {
  std::vector<int32_t> integers;
  int32_t last_event = 0;  // the number of the event that ends last
  int32_t closing_ms = 0;  // where an empty vibration closes the pass; 0: nowhere
  int32_t added_ms = 0;    // by which that is later than the end, which would read as a type
  int32_t missing_ms = 0;  // where one would stand, had the limit allowed it; 0: nowhere
  bool is_open = false;    // the event that ends last does not stand last, and nothing closes the pass
  std::optional<Fault> fault = std::nullopt;  // why there are no passes
};

// From events in ascending start.
//
// Sample output: a pass ends with the last record, so that the event that ends last stands last. Among events of one
// kind the later one wins where they overlap, so moving it there could hide others, and a tap that does not end with a
// whole millisecond would be cut; an empty vibration at its end then stands last instead. It must not start beyond the
// limit. One pass ends without it where its furthest vibration does; more than one cannot do without.
Request request_of(std::vector<Event> events, const lrasynth_profile& profile, const Playback& playback);

}  // namespace design
