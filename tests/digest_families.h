// A wide grid of calls by families, condensed into digests: compared between builds, run on small stacks and on many
// threads. Nothing here writes the profile, allocates after construction, or depends on the platform.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lrasynth.h"

namespace grid {

// The same numbers everywhere, unlike those of the standard library's distributions.
class Random {
 public:
  explicit Random(uint32_t seed) : state_(seed) {}

  int32_t between(int32_t low, int32_t high) {
    state_ = state_ * 1664525U + 1013904223U;
    return low + static_cast<int32_t>((state_ >> 8U) % static_cast<uint32_t>(high - low + 1));
  }

 private:
  uint32_t state_;
};

// FNV-1a, 64 bits.
class Digest {
 public:
  explicit Digest(uint32_t seed = 1) : random(seed) {}

  void add(int32_t value) { add_bytes(&value, sizeof value); }
  void add(uint8_t value) { add_bytes(&value, sizeof value); }

  // The sign of a NaN is the processor's choice.
  void add(float value) {
    if (std::isnan(value)) return add(-1);
    add_bytes(&value, sizeof value);
  }

  template <class Sample, class Call>
  void add_output(int32_t length, Call call) {
    static_assert(sizeof(Sample) <= sizeof scratch_[0]);
    const auto count = static_cast<std::size_t>(length);
    if (count > scratch_.size()) std::abort();
    std::memset(scratch_.data(), 0xA5, count * sizeof(Sample));
    auto* const out = reinterpret_cast<Sample*>(scratch_.data());
    add(length);
    add(call(out));
    for (int32_t i = 0; i < length; ++i) add(out[i]);
  }

  uint64_t value() const { return value_; }

  Random random;

 private:
  void add_bytes(const void* bytes, size_t count) {
    const auto* const first = static_cast<const uint8_t*>(bytes);
    for (size_t i = 0; i < count; ++i) value_ = (value_ ^ first[i]) * 0x100000001b3U;
  }

  uint64_t value_ = 0xcbf29ce484222325U;
  std::vector<float> scratch_ = std::vector<float>(1U << 18U);
};

// Everything that returns a number.
inline void numbers(Digest& d) {
  for (int32_t x = -70; x <= 170; ++x) {
    const float f = static_cast<float>(x) * 1.25F;
    for (const auto conversion : {wave_transform, wave_reverse}) d.add(conversion(f));
    for (const auto gain : {custom_wave_transform, getIntensityMax, getIntensityMax_0832, getIntensityMax_1040,
                            getIntensityMax_9595, getC0, getZeroTime}) {
      d.add(gain(x));
    }
    for (const auto level :
         {getFrequency, getFrequency_0832_ShortData, getFrequency_1040_ShortData, getFrequency_9595_ShortData,
          getFrequency_0815_ShortData, getCycle, getF1, get_custom_wave_len, get_wav_len_high_frequency}) {
      d.add(level(x));
    }
    for (const int32_t y : {-300, 3, 80, 100, 130, 170, 235}) {
      for (const auto both :
           {getFrequency_4096, getFrequency_0832, getFrequency_1040, getFrequency_9595, getFrequency_081540,
            getIntensity, getIntensity_0832, getIntensity_1040, getIntensity_9595, getA1, getA2}) {
        d.add(both(y, x));
        d.add(both(x, y));
      }
      d.add(getFrequencyStepValue(y, x, 7 * x));
      d.add(get_sine_wave_len(y, f));
    }
  }
}

struct TapFunctions {
  int32_t (*length)(int32_t level);
  int32_t (*data)(int32_t level, int32_t intensity, uint8_t* out);
};

constexpr TapFunctions kTaps[] = {{getShortSignalDataLength, getShortSignalData},
                                  {getShortSignalDataLength_0832, getShortSignalData_0832},
                                  {getShortSignalDataLength_1040, getShortSignalData_1040},
                                  {getShortSignalDataLength_9595, getShortSignalData_9595},
                                  {get_custom_wave_len, shortWave_func},
                                  {get_wav_len_high_frequency, shortWave_func_custom},
                                  {get_custom_wave_len_0832, shortWave_func_custom_0832},
                                  {get_custom_wave_len_9595, shortWave_func_custom_9595}};

inline void taps(Digest& d) {
  for (const TapFunctions& tap : kTaps) {
    for (int32_t level = -1; level <= 101; ++level) {
      for (const int32_t intensity : {-60, 33, 80, d.random.between(0, 255)}) {
        d.add_output<uint8_t>(tap.length(level), [=](uint8_t* out) { return tap.data(level, intensity, out); });
      }
    }
  }
}

inline void synthesisers(Digest& d) {
  for (int32_t level = 0; level <= 100; level += 3) {
    const auto random = [&](int32_t low, int32_t high) { return d.random.between(low, high); };
    const auto cycles = [&] { return static_cast<float>(random(0, 24)) / 8; };
    const int32_t f1_hz = random(60, 400), f2_hz = random(60, 400), intensity = random(-20, 120);
    const int32_t a1 = random(-20, 120), a2 = random(-20, 120), reverse = random(0, 1);
    const float c0 = cycles(), c1 = cycles(), c2 = cycles(), zero_ms = cycles();
    d.add_output<int32_t>(get_wave_func_wave_len(level, f1_hz, f2_hz, zero_ms), [=](int32_t* out) {
      return wave_func(level, intensity, f1_hz, a1, f2_hz, a2, out, zero_ms);
    });
    d.add_output<int32_t>(get_wave_func_wave_len_custom(level, f1_hz, f2_hz, c0, c1, c2, zero_ms), [=](int32_t* out) {
      return wave_func_custom(getFrequency(level), intensity, f1_hz, a1, f2_hz, a2, reverse, out, c0, c1, c2, zero_ms);
    });
  }
}

inline void tones(Digest& d) {
  for (int32_t hz = 50; hz <= 400; hz += 7) {
    const int32_t half_periods = d.random.between(1, 60);
    const float cycles = static_cast<float>(half_periods) * 0.5F;
    const int32_t amplitude = d.random.between(-150, 150);
    d.add_output<uint8_t>(get_sine_wave_len(hz, cycles),
                          [=](uint8_t* out) { return sine(half_periods, hz, amplitude, out); });
    d.add_output<float>(get_sine_wave_len(hz, cycles),
                        [=](float* out) { return get_sine(hz, amplitude, out, cycles); });
    d.add_output<float>(hz, [=](float* out) { return getIncreasingStepIntensity(hz, out, cycles, 9); });
  }
}

constexpr int32_t kRecord = 17;
constexpr int32_t kMostEvents = 12;

// Taps and vibrations with gaps and overlaps; the last is a vibration. Returns the length.
inline int32_t make_pattern(Random& random, int32_t* pattern) {
  const int32_t events = random.between(1, kMostEvents);
  for (int32_t i = 0, start_ms = 0; i < events; ++i, start_ms += random.between(0, 200)) {
    int32_t* const record = pattern + i * kRecord;
    const bool continuous = i == events - 1 || random.between(0, 2) > 0;
    const int32_t duration_ms = random.between(10, 300);
    const int32_t head[] = {continuous ? 4096 : 4097, start_ms, random.between(0, 120), random.between(-1, 101),
                            duration_ms};
    std::copy_n(head, 5, record);
    for (int32_t point = 0; point < 4; ++point) {
      const int32_t values[] = {duration_ms * point / 3, random.between(0, 110), random.between(-55, 55)};
      std::copy_n(values, 3, record + 5 + 3 * point);
    }
  }
  return events * kRecord;
}

// Also the compact stream, where the profile asks for it.
inline void patterns(Digest& d) {
  int32_t pattern[kRecord * kMostEvents];
  for (int32_t i = 0; i < 12; ++i) {
    const int32_t length = make_pattern(d.random, pattern);
    const int32_t loops = d.random.between(0, 3), gap_ms = d.random.between(-5, 60);
    d.add(getLongSignalDataLength(loops, gap_ms, pattern, length));
    d.add_output<uint8_t>(getLongSignalBufferLength(loops, gap_ms, pattern, length),
                          [&](uint8_t* out) { return getLongSignalData(loops, gap_ms, pattern, out, length, 80000); });
  }
}

constexpr struct {
  const char* name;
  void (*walk)(Digest&);
} kFamilies[] = {
    {"numbers", numbers}, {"taps", taps}, {"synthesisers", synthesisers}, {"tones", tones}, {"patterns", patterns}};

// Calls visit() under every profile that makes a difference.
template <class Visit>
void every_profile(Visit visit) {
  for (const int32_t motor : {832, 1040, 9595, 81540, 1234}) {
    for (const int32_t chip : {0, 1, 11}) {
      for (const int32_t boost : {0, 1}) {
        if (motor != 832 && boost == 1) continue;  // nobody else reads it
        setMotorType(motor);
        setChipType(chip);
        setBoostFlg(boost);
        visit();
      }
    }
  }
  setMotorType(1040);
  setChipType(0);
  setBoostFlg(0);
}

}  // namespace grid
