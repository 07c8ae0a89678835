// SPDX-License-Identifier: Apache-2.0
// What every command renders and every output form shows.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "lrasynth.h"

namespace command {

constexpr int32_t kLongestMs = 600'000;  // of anything that the command renders

// A stretch of time that plots name and shade.
struct Section {
  double start_ms;
  double end_ms;
  std::string label;
  bool shaded;
};

// An event of a pattern over time: its intensity between straight lines.
struct EventShape {
  bool continuous;
  std::vector<std::array<double, 2>> intensity_at_ms;
};

struct Waveform {
  std::string title;
  std::vector<uint8_t> codes;
  std::vector<Section> sections = {};
  std::vector<EventShape> events = {};
  int32_t sample_rate = SAMPLE_RATE;

  double ms_of(size_t sample) const { return static_cast<double>(sample) * 1000.0 / sample_rate; }
  double length_ms() const { return ms_of(codes.size()); }
};

// A sample code is an amplitude in two's complement.
constexpr int amplitude(uint8_t code) { return static_cast<int8_t>(code); }

}  // namespace command
