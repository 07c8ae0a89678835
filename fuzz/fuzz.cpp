// SPDX-License-Identifier: Apache-2.0
// Fuzzes the calls of one list, kShort or kLong, under any profile.
#include "calls.h"

namespace {

// Fuzzer input read as values. Zeros follow the last byte.
struct Input {
  const uint8_t* next;
  size_t left;

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
  template <class Number>
  Number about(int32_t /*low*/, int32_t /*high*/) {
    if constexpr (std::is_integral_v<Number>) return integer();
    return flip() ? static_cast<Number>(integer()) / 8 : raw<Number>();
  }

  // Well-formed, bent in a few places, or arbitrary.
  std::vector<int32_t> pattern() {
    const uint8_t kind = raw<uint8_t>() % 4;
    std::vector<int32_t> pattern = kind == 3 ? std::vector<int32_t>(raw<uint8_t>() % 80) : calls::make_pattern(*this);
    if (kind == 3) {
      for (int32_t& value : pattern) value = raw<uint8_t>() % 8 == 0 ? LRASYNTH_CONTINUOUS + flip() : integer();
    } else if (kind > 0) {
      for (int32_t bends = raw<uint8_t>() % 4; bends >= 0; --bends)
        pattern[raw<uint8_t>() % pattern.size()] = flip() ? LRASYNTH_CONTINUOUS + flip() : integer();
      if (flip()) pattern.resize(pattern.size() - raw<uint8_t>() % 17);
    }
    return pattern;
  }

  // The calls check what is promised; what else they give does not matter here.
  template <class Number>
  void result(Number /*number*/) {}
  template <class Sample>
  void output(int32_t /*length*/, int32_t /*status*/, const std::vector<Sample>& /*samples*/) {}

  void set_profile() {
    const int32_t motors[] = {832, 1040, 9595, 81540, integer()};
    const int32_t chips[] = {0, 1, 11, integer()};
    setMotorType(motors[raw<uint8_t>() % 5]);
    setChipType(chips[raw<uint8_t>() % 4]);
    setBoostFlg(integer());
    if (flip() && flip()) SAMPLE_RATE = flip() ? raw<int32_t>() : 1000 * raw<int8_t>();
  }
};

constexpr const auto& kCalls = calls::LRASYNTH_FUZZED_CALLS<Input>;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Input in{bytes, size};
  in.set_profile();
  for (int call = 0; call < 8 && in.left > 0; ++call) kCalls[in.raw<uint8_t>() % std::size(kCalls)].run(in);
  return 0;
}
