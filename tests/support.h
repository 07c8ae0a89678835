// What the tests share: a profile for the length of a scope, and waveforms as vectors of exactly the reported size.
#pragma once

#include <cstdint>
#include <vector>

#include "lrasynth.h"

using Bytes = std::vector<uint8_t>;
using Integers = std::vector<int32_t>;

class ScopedProfile {
 public:
  explicit ScopedProfile(int32_t motor, int32_t chip = 0, int32_t boost_flag = 1) {
    setChipType(chip);
    setMotorType(motor);
    giBoostFlg = boost_flag;
  }
  ScopedProfile(const ScopedProfile&) = delete;
  ScopedProfile& operator=(const ScopedProfile&) = delete;
  ~ScopedProfile() {
    setChipType(0);
    setMotorType(1040);
    giBoostFlg = 1;
  }
};

inline Bytes tap(int32_t level, int32_t intensity) {
  Bytes out(static_cast<std::size_t>(getShortSignalDataLength(level)), 77);
  getShortSignalData(level, intensity, out.data());
  return out;
}

struct Rendered {
  int32_t status;
  Bytes bytes;
};

// A long signal in a buffer that held 77 everywhere.
inline Rendered pattern(const Integers& request, int32_t loop_count = 1, int32_t interval_ms = 0,
                        int32_t limit_ms = 60000) {
  const auto length = static_cast<int32_t>(request.size());
  Bytes out(static_cast<std::size_t>(getLongSignalBufferLength(loop_count, interval_ms, request.data(), length)), 77);
  const int32_t status = getLongSignalData(loop_count, interval_ms, request.data(), out.data(), length, limit_ms);
  return {status, out};
}

// Records laid end to end.
inline Integers request_of(const std::vector<Integers>& records) {
  Integers request;
  for (Integers record : records) {
    record.resize(17);
    request.insert(request.end(), record.begin(), record.end());
  }
  return request;
}

template <class Sample>
std::vector<Sample> slice(const std::vector<Sample>& samples, std::size_t first, std::size_t count) {
  return {samples.begin() + static_cast<std::ptrdiff_t>(first),
          samples.begin() + static_cast<std::ptrdiff_t>(first + count)};
}
