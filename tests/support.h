// What the tests share: a profile for the length of a scope, requests, and waveforms as vectors of exactly the reported
// size, in which 77 stands where nothing was written.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
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

template <class Sample>
std::vector<Sample> slice(const std::vector<Sample>& samples, std::size_t first, std::size_t count) {
  return {samples.data() + first, samples.data() + first + count};
}

// Fails unless the call returns 0 and writes every one of `length` elements, none where that is negative.
template <class Sample>
std::vector<Sample> filled(int32_t length, const std::function<int32_t(Sample*)>& call) {
  std::vector<Sample> once(static_cast<std::size_t>(std::max(0, length)), Sample{17});
  std::vector<Sample> again(once.size(), Sample{34});
  EXPECT_EQ(call(once.data()), 0);
  EXPECT_EQ(call(again.data()), 0);
  EXPECT_EQ(once, again);
  return once;
}

inline Bytes tap(int32_t level, int32_t intensity) {
  return filled<uint8_t>(getShortSignalDataLength(level),
                         [=](uint8_t* out) { return getShortSignalData(level, intensity, out); });
}

inline Integers transient(int32_t start_ms, int32_t intensity, int32_t level) {
  return {LRASYNTH_TRANSIENT, start_ms, intensity, level};
}

inline Integers curve(int32_t start_ms, int32_t duration_ms, const Integers& ms, const Integers& at) {
  return {LRASYNTH_CONTINUOUS,
          start_ms,
          0,
          0,
          duration_ms,
          ms[0],
          at[0],
          0,
          ms[1],
          at[1],
          0,
          ms[2],
          at[2],
          0,
          ms[3],
          at[3],
          0};
}

// Records laid end to end, in a block of exactly that size.
inline Integers request_of(const std::vector<Integers>& records) {
  Integers request(LRASYNTH_RECORD_LENGTH * records.size());
  auto* next = request.data();
  for (const Integers& record : records)
    next = std::copy(record.begin(), record.end(), next) + LRASYNTH_RECORD_LENGTH - record.size();
  return request;
}

struct Rendered {
  int32_t status;
  Bytes bytes;
};

inline Rendered pattern(const Integers& request, int32_t loops = 1, int32_t gap_ms = 0, int32_t limit_ms = 60000) {
  const auto length = static_cast<int32_t>(request.size());
  Bytes out(static_cast<std::size_t>(getLongSignalBufferLength(loops, gap_ms, request.data(), length)), kUntouched);
  const int32_t status = getLongSignalData(loops, gap_ms, request.data(), out.data(), length, limit_ms);
  return {status, out};
}
