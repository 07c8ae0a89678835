// SPDX-License-Identifier: Apache-2.0
// What front ends make, show and write: a titled waveform with all that is known of it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/advice/warnings.h"
#include "design/base/motor.h"
#include "design/pattern/file.h"
#include "design/waveform/response.h"
#include "design/waveform/waveform.h"

namespace design {

struct Piece {
  Waveform waveform;
  std::shared_ptr<const Score> score = nullptr;  // of a pattern
  std::shared_ptr<const Source> source = nullptr;
  std::vector<Jump> jumps = {};  // of a pattern that has samples
  std::vector<Warning> warnings = {};
  std::vector<std::optional<double>> levels = {};  // of a pattern's events, where they are heard, as they are felt
};

// The levels of all, and what of their warnings tells what is hardly felt, are estimated with a resonator.

// With another one, in place of those.
void feel(Piece& piece, const Resonator& resonator);

// A tap of its own, perhaps as weak as inside a pattern. The motor has taps.
Piece tap_piece(const lrasynth_profile& profile, int32_t level, int32_t intensity, bool in_pattern,
                const Resonator& resonator = {});

Piece tone_piece(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude,
                 const Resonator& resonator = {});

// What is wrong with a tone, like "frequency: must be ..."; empty: nothing.
std::string tone_fault(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods);

// What a pattern plays on, what can be read of it, and all passes as a piece where it has no faults.
struct PatternReading {
  Setup setup;
  PatternFile file;
  std::optional<Piece> piece;
};

// What is asked for overrides what the file says, which its notes tell.
PatternReading piece_of(const Setup& asked, PatternFile file, const std::string& name, const Resonator& resonator = {});

// Of a text of ours, or of a format from elsewhere.
PatternReading read_piece(const Setup& asked, std::string_view text, const std::string& name,
                          const Resonator& resonator = {});

}  // namespace design
