// SPDX-License-Identifier: Apache-2.0
// The picture of one waveform over time; a pattern's with its frequency and its events below.
#pragma once

#include <optional>
#include <string>

#include "design/piece.h"
#include "design/response.h"

namespace design {

// Not of an event stream.
std::string plot_of(const Piece& piece, const std::optional<Resonator>& resonator, Span shown);

}  // namespace design
