// The two synthesisers of a motor-1040 transient. They share shape, segments and rendering and differ in the coding.
#pragma once

#include <cstdint>

#include "transient/timing.h"

namespace lrasynth {

// The tap of a level in the mid-level or the edge-level shape: exactly transient_length bytes of that shape, at most
// `capacity`. out may be null only if both come to 0.
void render_mid_tap(int32_t level, int32_t intensity, uint8_t* out, int32_t capacity);
void render_edge_tap(int32_t level, int32_t intensity, uint8_t* out, int32_t capacity);

}  // namespace lrasynth
