// SPDX-License-Identifier: Apache-2.0
// The picture of one waveform over time; a pattern's with its frequency and its events below.
#pragma once

#include <string>

#include "design/advice/piece.h"
#include "design/waveform/felt.h"
#include "design/waveform/response.h"

namespace design {

// Not of an event stream. What is felt of it stands below, and the motion under the waveform, where that is given.
std::string plot_of(const Piece& piece, const Motion* motion, const Felt& felt, Span shown);

}  // namespace design
