// What the rest of the library derives from the device profile. The five variables themselves are in the public header.
#pragma once

#include <cstdint>

#include "lrasynth.h"

namespace lrasynth {

constexpr int32_t kMotor0832 = 832;
constexpr int32_t kMotor1040 = 1040;
constexpr int32_t kMotor9595 = 9595;
constexpr int32_t kMotor081540 = 81540;

constexpr int32_t kEventStreamChip = 11;

// Resonant frequency in Hz of the profile's motor.
int32_t base_frequency_hz();

// Publishes a frequency in F0. Relaxed, because several threads may render (and so store the same value) at once.
void store_f0(int32_t frequency_hz);

inline int32_t samples_per_ms() { return SAMPLE_RATE / 1000; }

inline float sample_rate() { return static_cast<float>(SAMPLE_RATE); }

// Seconds per sample, divided in double precision before the narrowing; 0 for a rate of 0.
inline float sample_period() { return SAMPLE_RATE == 0 ? 0.0F : static_cast<float>(1.0 / SAMPLE_RATE); }

}  // namespace lrasynth
