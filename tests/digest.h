// SPDX-License-Identifier: Apache-2.0
// A wide grid of random calls, condensed into digests: compared between builds, run on small stacks and on many
// threads. Nothing here writes the profile or depends on the platform.
#pragma once

#include <cmath>

#include "calls.h"

// The same numbers everywhere, unlike those of the standard library's distributions. The digest is FNV-1a, 64 bits.
struct Digest {
  uint32_t state = 1;
  uint64_t value = 0xcbf29ce484222325U;

  uint32_t next() {
    state = state * 1664525U + 1013904223U;
    return state >> 8U;
  }
  int32_t between(int32_t low, int32_t high) {
    return low + static_cast<int32_t>(next() % static_cast<uint32_t>(high - low + 1));
  }
  template <class Number>
  Number about(int32_t low, int32_t high) {
    if (next() % 64 == 0) return static_cast<Number>(static_cast<int32_t>(next() << 8U));
    if (std::is_integral_v<Number>) return static_cast<Number>(between(low, high));
    return static_cast<Number>(between(8 * low, 8 * high)) / 8;
  }
  std::vector<int32_t> pattern() { return calls::make_pattern(*this); }

  template <class Number>
  void result(Number number) {
    if (std::isnan(static_cast<double>(number))) number = -1;  // its sign is the processor's choice
    uint8_t bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    for (const uint8_t byte : bytes) value = (value ^ byte) * 0x100000001b3U;
  }
  template <class Sample>
  void output(int32_t length, int32_t status, const std::vector<Sample>& samples) {
    result(length);
    result(status);
    for (const Sample sample : samples) result(sample);
  }
};

// Calls visit(name, walk), where walk(digest) goes through that many long signals or, as these are so much longer, 16
// times as many other calls of one function.
template <class Visit>
void every_call(int times, Visit visit) {
  const auto walk_list = [&](const auto& list, int list_times) {
    for (const calls::Call<Digest>& call : list) {
      visit(call.name, [&](Digest& digest) {
        for (int i = 0; i < list_times; ++i) call.run(digest);
      });
    }
  };
  walk_list(calls::kShort<Digest>, 16 * times);
  walk_list(calls::kLong<Digest>, times);
  walk_list(calls::kChecks<Digest>, times);
}

// Calls visit() under every profile that makes a difference, and at odd rates; only motor 832 reads the boost flag.
template <class Visit>
void every_profile(Visit visit) {
  for (const int32_t motor : {832, 1040, 9595, 81540, 1234}) {
    for (const int32_t chip : {0, 1, 11}) {
      for (int32_t boost = 0; boost <= (motor == 832 ? 1 : 0); ++boost) {
        setMotorType(motor);
        setChipType(chip);
        setBoostFlg(boost);
        visit();
      }
    }
  }
  setMotorType(LRASYNTH_MOTOR_1040);
  setChipType(0);
  for (const int32_t rate : {INT32_MIN, -24000, -1, 0, 1, 999, 7919, 15000, 44100}) {
    SAMPLE_RATE = rate;
    visit();
  }
}
