// Short signals by motor model: the one choice of a tap's length and synthesiser, for single taps and for patterns.
#pragma once

#include <cstdint>

namespace lrasynth {

// Whether the motor model has taps at all.
bool has_taps(int32_t motor);

// Length in samples of the motor's tap for a level; 0 where there is none.
int32_t tap_length(int32_t motor, int32_t level);

// Writes that tap, of a motor that has taps, cut at `capacity` bytes. out may be null only where nothing is written.
void render_tap(int32_t motor, int32_t level, int32_t intensity, uint8_t* out, int32_t capacity);

}  // namespace lrasynth
