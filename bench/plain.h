// Plain renderings of the same waveforms: whole-array passes over scratch arrays from the heap, std::sin for every
// sine. They are what the library is measured against, and give the same bytes.
#pragma once

#include <cstdint>
#include <vector>

namespace plain {

// A request as getLongSignalData renders it, without repetition.
void long_signal(const std::vector<int32_t>& request, uint8_t* out, int32_t length);

// A tap of the profile's motor as getShortSignalData renders it, of `length` bytes.
void tap(int32_t level, int32_t intensity, uint8_t* out, int32_t length);

// Two sines per sample and nothing else, over phases like those of a continuous vibration. Returns their sum.
float two_sines(int32_t samples);

}  // namespace plain
