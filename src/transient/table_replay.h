// Replay of stored bursts: which table a level takes, and how it is scaled.
#pragma once

#include <cstdint>
#include <span>

namespace lrasynth {

using Burst = std::span<const uint8_t>;

// The burst of a level; empty below level 0 and above 100.
Burst burst_0832(int32_t level);
Burst burst_9595(int32_t level);

// Writes the burst scaled by an intensity in percent, cut at `capacity` bytes.
void replay(Burst burst, int32_t intensity, uint8_t* out, int32_t capacity);

}  // namespace lrasynth
