// SPDX-License-Identifier: Apache-2.0
// What there is to know about a waveform, in words and numbers.
#pragma once

#include <string>
#include <vector>

#include "design/advice/piece.h"
#include "design/waveform/felt.h"
#include "design/waveform/response.h"

namespace design {

std::vector<Number> numbers_of(const Piece& piece, const Response& response, const Felt& felt);

// Title and numbers; of a pattern its events, too, and the largest jump.
std::string summary_of(const Piece& piece, const Resonator& resonator);

// The numbers of waveforms beside one another, a column each.
std::string table_of(const std::vector<Piece>& pieces, const std::vector<Motion>& motions,
                     const std::vector<Felt>& felts);

}  // namespace design
