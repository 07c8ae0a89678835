// SPDX-License-Identifier: Apache-2.0
// Patterns as people write them, in JSON: read with every fault and its place, written in one canonical form, and
// turned into the integers of a request.
#pragma once

#include <array>
#include <cstdint>
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
  Times are whole milliseconds. A transient has an intensity (0..100) and a level (0..100). A continuous event has four
  points of time, intensity (0..100) and frequency offset (-50..50), whose times span its duration.

  Events may stand in any order. Transients play over continuous events; of two events of one kind, the one that starts
  later plays. With --chip 11 the output is the event stream: .bin, or .csv to read it.

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

// The records as the profile's chip needs them, from events in ascending start.
//
// Sample output: a pass ends with the last record, so that the event that ends last stands last. Among events of one
// kind the later one wins where they overlap, so moving it there could hide others, and a tap that does not end with a
// whole millisecond would be cut; an empty vibration at its end then stands last instead.
std::vector<int32_t> request_of(std::vector<Event> events, const lrasynth_profile& profile, int32_t limit_ms);

}  // namespace design
