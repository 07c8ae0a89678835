// SPDX-License-Identifier: Apache-2.0
// What of a pattern a finger will hardly feel, or not tell apart, as far as that can be estimated.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "design/advice/warnings.h"
#include "design/waveform/drive.h"
#include "design/waveform/felt.h"

namespace design {

// Of an event that a pattern plays its largest level from its start to 20 ms after its end, in the first pass; nothing
// of one that others cover.
std::optional<double> level_of(const Score& score, const Felt& felt, size_t event);

// In ascending time. The levels may be those of the first pass alone.
std::vector<Warning> felt_warnings_of(const Score& score, const Felt& felt);

// Of a tap of its own, or a tone.
std::vector<Warning> felt_warnings_of(const Felt& felt);

// Of what was to be felt more strongly than its motor can.
std::vector<Warning> warnings_of(const std::vector<Unreached>& unreached, const Resonator& resonator);

// What may be meant so.
std::vector<std::string> felt_notes_of(const Score& score, const Felt& felt);

}  // namespace design
