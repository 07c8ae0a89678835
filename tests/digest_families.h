// A wide grid of calls by families, condensed into digests: compared between builds, run on small stacks and on many
// threads. Nothing here writes the profile or depends on the platform.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lrasynth.h"

namespace grid {

// The same numbers everywhere, unlike those of the standard library's distributions.
struct Random {
  uint32_t state = 1;

  int32_t between(int32_t low, int32_t high) {
    state = state * 1664525U + 1013904223U;
    return low + static_cast<int32_t>((state >> 8U) % static_cast<uint32_t>(high - low + 1));
  }
};

// FNV-1a, 64 bits.
struct Digest {
  Random random;
  uint64_t value = 0xcbf29ce484222325U;
  std::vector<float> scratch = std::vector<float>(1U << 18U);

  template <class Number>
  void add(Number number) {
    if (std::isnan(number)) return add(-1);  // its sign is the processor's choice
    uint8_t bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    for (const uint8_t byte : bytes) value = (value ^ byte) * 0x100000001b3U;
  }

  template <class Sample, class Call>
  void add_output(int32_t length, Call call) {
    const auto size = static_cast<std::size_t>(length) * sizeof(Sample);
    if (size > scratch.size() * sizeof(float)) std::abort();
    auto* const out = static_cast<Sample*>(std::memset(scratch.data(), 0xA5, size));
    add(length);
    add(call(out));
    for (int32_t i = 0; i < length; ++i) add(out[i]);
  }
};

constexpr auto kGains =
    std::to_array<float (*)(int32_t)>({custom_wave_transform, getIntensityMax, getIntensityMax_0832,
                                       getIntensityMax_1040, getIntensityMax_9595, getC0, getZeroTime});
constexpr auto kLevelCurves = std::to_array<int32_t (*)(int32_t)>(
    {getFrequency, getFrequency_0832_ShortData, getFrequency_1040_ShortData, getFrequency_9595_ShortData,
     getFrequency_0815_ShortData, getCycle, getF1, get_custom_wave_len, get_wav_len_high_frequency});
constexpr auto kCurvesOfTwo = std::to_array<int32_t (*)(int32_t, int32_t)>(
    {getFrequency_4096, getFrequency_0832, getFrequency_1040, getFrequency_9595, getFrequency_081540, getIntensity,
     getIntensity_0832, getIntensity_1040, getIntensity_9595, getA1, getA2});

// Everything that returns a number.
inline void numbers(Digest& d) {
  for (int32_t x = -70; x <= 170; ++x) {
    const float f = static_cast<float>(x) * 1.25F;
    for (const auto conversion : {wave_transform, wave_reverse}) d.add(conversion(f));
    for (const auto gain : kGains) d.add(gain(x));
    for (const auto curve : kLevelCurves) d.add(curve(x));
    for (const int32_t y : {-300, 3, 80, 100, 130, 170, 235}) {
      for (const auto curve : kCurvesOfTwo) {
        d.add(curve(y, x));
        d.add(curve(x, y));
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

// Taps and vibrations with gaps and overlaps; the last is a vibration of at least that duration.
template <class Source>
std::vector<int32_t> make_pattern(Source& source, int32_t least_last_ms) {
  std::vector<int32_t> pattern;
  const auto add = [&](const std::initializer_list<int32_t>& fields) { pattern.insert(pattern.end(), fields); };
  const int32_t events = source.between(1, 12);
  for (int32_t i = 1, start_ms = 0; i <= events; ++i, start_ms += source.between(0, 200)) {
    const int32_t type = i == events || source.between(0, 2) > 0 ? LRASYNTH_CONTINUOUS : LRASYNTH_TRANSIENT;
    const int32_t duration_ms = source.between(i == events ? least_last_ms : 10, 300);
    add({type, start_ms, source.between(0, 120), source.between(-1, 101), duration_ms});
    for (int32_t point = 0; point < 4; ++point)
      add({duration_ms * point / 3, source.between(0, 110), source.between(-55, 55)});
  }
  return pattern;
}

// Also the compact stream, where the profile asks for it.
inline void patterns(Digest& d) {
  for (int32_t i = 0; i < 12; ++i) {
    const std::vector<int32_t> pattern = make_pattern(d.random, 10);
    const auto length = static_cast<int32_t>(pattern.size());
    const int32_t loops = d.random.between(0, 3), gap_ms = d.random.between(-5, 60);
    d.add(getLongSignalDataLength(loops, gap_ms, pattern.data(), length));
    d.add_output<uint8_t>(getLongSignalBufferLength(loops, gap_ms, pattern.data(), length), [&](uint8_t* out) {
      return getLongSignalData(loops, gap_ms, pattern.data(), out, length, 80000);
    });
  }
}

constexpr struct {
  const char* name;
  void (*walk)(Digest&);
} kFamilies[] = {
    {"numbers", numbers}, {"taps", taps}, {"synthesisers", synthesisers}, {"tones", tones}, {"patterns", patterns}};

// Calls visit() under every profile that makes a difference; only motor 832 reads the boost flag.
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
}

}  // namespace grid
