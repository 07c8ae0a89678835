// SPDX-License-Identifier: Apache-2.0
// What stands in a pattern file: events and groups of them, with times that are not yet whole milliseconds.
#pragma once

#include <string>
#include <vector>

#include "design/pattern/event.h"
#include "design/pattern/json.h"

namespace design {

constexpr size_t kDeepestGroup = 8;

struct Entry {
  const JsonValue* json = nullptr;
  int32_t number = 0;   // where it stands, from 1
  double start_ms = 0;  // from the start of what it stands in
  AnyKind kind = {};
  std::vector<double> times_ms = {};  // of points, in their order

  // Of a group.
  std::vector<Entry> entries = {};
  int32_t repeat = 1;
  double every_ms = 0;
  int32_t gain = 100;  // percent

  bool is_group() const { return !entries.empty(); }
};

// Events with whole milliseconds from the pattern's start on, in ascending start unless they are to stay in order; of
// equal ones in the order in which what they stand in starts.
// Those that would start where an integer reads as an event are moved behind it, which a note tells.
std::vector<Event> laid_out(std::vector<Entry> entries, bool stay, Faults& faults, std::vector<std::string>& notes);

}  // namespace design
