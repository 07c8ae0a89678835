// What every command renders and every output form shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lrasynth.h"

namespace lrasynth {

// A stretch of time that plots name.
struct Span {
  double start_ms;
  double end_ms;
  std::string label;
};

struct Waveform {
  std::string title;
  std::vector<uint8_t> codes;
  std::vector<Span> sections = {};
  int32_t sample_rate = SAMPLE_RATE;

  double ms_of(size_t sample) const { return static_cast<double>(sample) * 1000.0 / sample_rate; }
  double length_ms() const { return ms_of(codes.size()); }
};

// A sample code is an amplitude in two's complement.
constexpr int amplitude(uint8_t code) { return static_cast<int8_t>(code); }

}  // namespace lrasynth
