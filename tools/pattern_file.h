// SPDX-License-Identifier: Apache-2.0
// Patterns as people write them: JSON, checked, and turned into the integers of a request.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace command {

struct CurvePoint {
  int32_t time_ms = 0;
  int32_t intensity = 0;
  int32_t offset = 0;
};

struct Event {
  int32_t number = 0;  // in its file, from 1
  bool continuous = false;
  int32_t start_ms = 0;
  int32_t intensity = 0;  // of a transient
  int32_t level = 0;
  int32_t duration_ms = 0;  // of a continuous vibration
  std::array<CurvePoint, 4> points = {};

  // At the profile's motor and sample rate.
  double end_ms() const;
};

// Every fault, one line each; the events that have none.
struct PatternFile {
  std::vector<Event> events;
  std::vector<std::string> faults;
};

PatternFile read_pattern(const std::string& json);

// Ascending start, a line per event, every field in the order of the documentation.
std::string canonical_json(const std::vector<Event>& events);

// The records as the profile's chip needs them, from events in ascending start.
//
// Sample output: the event that ends last stands last. Among events of one kind the later one wins where they overlap,
// so moving it there could hide others; an empty vibration at its end then stands last instead.
std::vector<int32_t> request_of(std::vector<Event> events);

}  // namespace command
