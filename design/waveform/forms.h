// SPDX-License-Identifier: Apache-2.0
// Text forms of samples and requests, and the samples as they are.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "design/advice/piece.h"

namespace design {

// What each form is, for people.
constexpr const char* kFormsHelp = R"(OUTPUT:
  .wav  mono, 16 bits, the amplitude in the upper byte; with --audible resampled to 48000 samples a second
  .svg  a plot
  .csv  number, time in ms, sample code and amplitude of every sample
  .bin  the sample codes
)";

// Takes a form's bytes, piece by piece, and says whether it takes more.
using Sink = std::function<bool(std::string_view bytes)>;

// A line for each sample; of an event stream one for each event, and the total time.
void write_csv(const Piece& piece, const Sink& sink);

// The sample codes, or the stream.
void write_codes(const Piece& piece, const Sink& sink);

// What stands before the samples of a WAV file: mono, 16 bits.
std::string wav_head(int32_t sample_rate, int64_t samples);

// A WAV file: mono, 16 bits, the amplitude in the upper byte. Not of an event stream.
void write_wav(const Piece& piece, const Sink& sink);

// "385 samples, 16.0 ms"
std::string size_of(const Piece& piece);

// A request for a C host.
std::string c_array(const std::vector<int32_t>& request);

}  // namespace design
