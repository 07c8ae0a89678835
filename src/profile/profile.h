// SPDX-License-Identifier: Apache-2.0
// The device profile as a value. The five variables that hold it between calls are in the public header.
#pragma once

#include <cstdint>

#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/motor.h"

namespace lrasynth {

// A sample rate, and what follows from it. Any value is safe.
struct Rate {
  constexpr Rate(int32_t rate_hz) : hz(rate_hz), per_ms(rate_hz / 1000) {}

  // 32-bit, as all times within a pattern.
  int32_t samples(int32_t ms) const { return wrap(int64_t{per_ms} * ms); }

  float single() const { return static_cast<float>(hz); }

  // Seconds per sample, divided in double precision before the narrowing; 0 for a rate of 0.
  float period() const { return hz == 0 ? 0.0F : static_cast<float>(1.0 / hz); }

  int32_t hz;
  int32_t per_ms;
};

struct Profile {
  int32_t chip_type;
  Rate rate;
  const Motor& motor;
  int32_t boost_flag;

  // Whether long signals are compact event streams.
  bool streams() const { return chip_type == LRASYNTH_CHIP_EVENT_STREAM; }
};

// A profile as hosts hand it in.
Profile profile_of(const lrasynth_profile& profile);

// What the host has set. An exported function takes it once, on entry; nothing else reads the variables.
Profile current_profile();

// The same, but with another motor.
Profile with_motor(int32_t motor_type);

// Publishes the motor's resonant frequency in F0. Relaxed, because several threads may render (and so store the same
// value) at once.
void publish_f0(const Motor& motor);

}  // namespace lrasynth
