// The compact event stream of chip type 11: a description of the events that the chip plays by itself.
#pragma once

#include <cstdint>

namespace lrasynth {

// Length in bytes; 0 where the stream would not fit 2^31 - 1 or a null pattern would have to be read.
int32_t event_stream_length(int32_t loop_count, const int32_t* pattern, int32_t pattern_length);

// Writes the stream. Returns 0, or -1 with nothing written where its length is 0 or out is null.
int32_t write_event_stream(int32_t loop_count, const int32_t* pattern, int32_t pattern_length, uint8_t* out);

}  // namespace lrasynth
