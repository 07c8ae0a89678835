// Continuous vibration: one event whose intensity and frequency follow a curve of four points.
#pragma once

#include <cstdint>

#include "pattern/request.h"

namespace lrasynth {

// Draws the event's duration_samples() bytes from out[start] on. Nothing if there are none.
void render_continuous(const Record& event, uint8_t* out, int32_t start);

}  // namespace lrasynth
