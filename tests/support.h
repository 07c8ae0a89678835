// SPDX-License-Identifier: Apache-2.0
// What the tests share: a profile for the length of a scope, requests, and waveforms as vectors of exactly the reported
// size, in which 77 stands where nothing was written.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "lrasynth.h"

using testing::Each;
using testing::ElementsAre;

using Bytes = std::vector<uint8_t>;
using Integers = std::vector<int32_t>;

constexpr uint8_t kUntouched = 77;

class ScopedProfile {
 public:
  explicit ScopedProfile(int32_t motor, int32_t chip = 0, int32_t boost_flag = 1) { set(motor, chip, boost_flag); }
  ScopedProfile(const ScopedProfile&) = delete;
  ~ScopedProfile() { set(1040, 0, 1); }

 private:
  static void set(int32_t motor, int32_t chip, int32_t boost_flag) {
    setChipType(chip);
    setMotorType(motor);
    giBoostFlg = boost_flag;
  }
};

inline Bytes slice(const Bytes& samples, std::size_t first, std::size_t count) {
  return {samples.data() + first, samples.data() + first + count};
}

inline Bytes tap(int32_t level, int32_t intensity) {
  Bytes out(static_cast<std::size_t>(getShortSignalDataLength(level)), kUntouched);
  EXPECT_EQ(getShortSignalData(level, intensity, out.data()), 0);
  return out;
}

inline Integers transient(int32_t start_ms, int32_t intensity, int32_t level) {
  return {LRASYNTH_TRANSIENT, start_ms, intensity, level, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
}

// A vibration at the motor's resonant frequency.
inline Integers curve(int32_t start_ms, int32_t duration_ms, const Integers& ms, const Integers& at) {
  Integers record = {LRASYNTH_CONTINUOUS, start_ms, 0, 0, duration_ms};
  for (std::size_t point = 0; point < 4; ++point) record.insert(record.end(), {ms[point], at[point], 0});
  return record;
}

inline Integers steady(int32_t start_ms, int32_t duration_ms, int32_t intensity = 100) {
  return curve(start_ms, duration_ms, {0, 0, duration_ms, duration_ms}, Integers(4, intensity));
}

// Records laid end to end, in a block of exactly that size.
inline Integers request_of(const std::vector<Integers>& records) {
  Integers request;
  for (const Integers& record : records) request.insert(request.end(), record.begin(), record.end());
  request.shrink_to_fit();
  return request;
}

struct Rendered {
  int32_t status;
  Bytes bytes;
};

inline Rendered render(const std::vector<Integers>& records, int32_t loops = 1, int32_t gap_ms = 0,
                       int32_t limit_ms = 60000) {
  const Integers request = request_of(records);
  const auto length = static_cast<int32_t>(request.size());
  Bytes out(static_cast<std::size_t>(getLongSignalBufferLength(loops, gap_ms, request.data(), length)), kUntouched);
  return {getLongSignalData(loops, gap_ms, request.data(), out.data(), length, limit_ms), out};
}
