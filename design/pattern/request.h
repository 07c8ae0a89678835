// SPDX-License-Identifier: Apache-2.0
// Events as the integers of a request.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "design/pattern/file.h"

namespace design {

// What else is wrong with events that are fitted to this chip and motor, as the library judges their records one by
// one.
void add_faults(const std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback,
                Faults& faults);

// The records as the profile's chip needs them, and how they end a pass of samples.
struct Request {
  std::vector<int32_t> integers;
  size_t last_event = 0;   // the index of the event that ends last
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

// The integers for a C host.
std::string c_array(const Request& request);

}  // namespace design
