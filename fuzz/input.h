// Fuzzer input read as values, and calls checked against what the header promises.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "lrasynth.h"

inline void require(bool promise) {
  if (!promise) std::abort();
}

// A 32-bit product, as the header says.
inline int32_t to_samples(int32_t ms) {
  return static_cast<int32_t>(static_cast<uint32_t>(SAMPLE_RATE / 1000) * static_cast<uint32_t>(ms));
}

struct Input {
  const uint8_t* next;
  size_t left;

  // Zeros follow the last byte.
  template <class Value>
  Value raw() {
    Value value{};
    const size_t n = std::min(left, sizeof value);
    std::memcpy(&value, next, n);
    next += n;
    left -= n;
    return value;
  }

  int32_t between(int32_t low, int32_t high) { return low + raw<uint16_t>() % (high - low + 1); }
  bool flip() { return raw<uint8_t>() % 2 == 1; }

  // One byte says whether a small number or any follows.
  int32_t integer() {
    const int32_t first = raw<uint8_t>();
    return first < 220 ? first - 60 : raw<int32_t>();
  }
  float number() { return flip() ? static_cast<float>(integer()) / 8 : raw<float>(); }

  void set_profile() {
    const int32_t motors[] = {832, 1040, 9595, 81540, integer()};
    const int32_t chips[] = {0, 1, 11, integer()};
    setMotorType(motors[raw<uint8_t>() % 5]);
    setChipType(chips[raw<uint8_t>() % 4]);
    setBoostFlg(integer());
    if (flip() && flip()) SAMPLE_RATE = flip() ? raw<int32_t>() : 1000 * raw<int8_t>();
  }
};

// A window of a waveform, in a block of exactly its size, is that part of the whole.
template <class Read>
void check_window(Input& in, const uint8_t* whole, int64_t length, Read read) {
  const int64_t first = in.raw<uint32_t>() % (length + 1), count = in.raw<uint16_t>();
  const int64_t expected = std::min(count, length - first);
  const auto window = std::make_unique<uint8_t[]>(static_cast<size_t>(count));
  require(read(first, window.get(), count) == expected);
  require(std::equal(window.get(), window.get() + expected, whole + first));
}

// So that one execution stays fast.
constexpr int32_t kMostElements = 1 << 18;

enum class Extent { kWhole, kPart };

// Calls twice with heap blocks of exactly that length, of nothing where it is negative. Both calls agree; where the
// whole extent is promised they have overwritten all of it; a null pointer is refused, and status -1 leaves everything
// untouched.
template <class Sample, class Call>
void check_output(int32_t reported, Extent extent, Call call) {
  const int32_t length = std::max(0, reported);
  if (length > kMostElements) return;
  const auto count = static_cast<size_t>(length), size = count * sizeof(Sample);
  const auto once = std::make_unique<Sample[]>(count), again = std::make_unique<Sample[]>(count);
  std::memset(again.get(), extent == Extent::kWhole ? 0xA5 : 0, size);
  const int32_t status = call(once.get());
  require(status == 0 || status == -1);
  if (status == 0) {
    require(call(again.get()) == 0 && std::memcmp(once.get(), again.get(), size) == 0);
  } else if (extent == Extent::kWhole) {
    require(std::count(once.get(), once.get() + count, Sample{}) == length);
  }
  if (length > 0) require(call(static_cast<Sample*>(nullptr)) == -1);
}
