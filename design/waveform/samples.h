// SPDX-License-Identifier: Apache-2.0
// Samples and event streams as bytes of files.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "design/waveform/waveform.h"

namespace design {

// Takes a form's bytes, piece by piece, and says whether it takes more.
using Sink = std::function<bool(std::string_view bytes)>;

// A line for each sample; of an event stream one for each event, and the total time.
void write_csv(const Waveform& waveform, const Sink& sink);

// The sample codes, or the stream.
void write_codes(const Waveform& waveform, const Sink& sink);

// What stands before the samples of a WAV file: mono, 16 bits.
std::string wav_head(int32_t sample_rate, int64_t samples);

// A WAV file: mono, 16 bits, the amplitude in the upper byte. Not of an event stream.
void write_wav(const Waveform& waveform, const Sink& sink);

// "385 samples, 16.0 ms"
std::string size_of(const Waveform& waveform);

}  // namespace design
