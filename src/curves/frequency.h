// Frequency curves: level or frequency offset to whole hertz.
#pragma once

#include <cstdint>

namespace lrasynth {

constexpr int32_t kMinLevel = 0;
constexpr int32_t kMaxLevel = 100;
constexpr int32_t kMaxOffset = 50;  // frequency offsets are clamped to -50..50

// Drive frequency of a level (clamped) for the profile's motor; the clamped level itself for an unknown motor.
int32_t level_frequency_hz(int32_t level);

// Frequency at an offset (clamped) around a base frequency; the base itself for an unknown motor.
int32_t offset_frequency_hz(int32_t base_hz, int32_t offset);

// Hz per step, in single precision throughout; 0 for no difference or no steps.
float frequency_step(int32_t from_hz, int32_t to_hz, int32_t step_count);

}  // namespace lrasynth
