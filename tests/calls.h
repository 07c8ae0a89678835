// SPDX-License-Identifier: Apache-2.0
// Every exported call, once. A host gives the arguments and takes the results: random numbers for the digests, rows of
// a table, or the fuzzer's bytes.
//
//   host.about<Number>(low, high)            the next argument, mostly between those
//   host.between(low, high)                  a whole number between them, for what make_pattern makes up
//   host.pattern()                           a long-signal request
//   host.result(number)                      what a function returns
//   host.output(length, status, samples)     what one has written
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <tuple>
#include <vector>

#include "lrasynth.h"

namespace calls {

// Whoever runs the calls dies of a broken promise.
inline void require(bool promise, const char* what) {
  if (promise) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

// So that one call stays fast.
constexpr int32_t kMostElements = 1 << 18;

enum class Extent { kWhole, kPart };

// Calls with heap blocks of exactly the reported length, of nothing where it is negative, and checks what the header
// promises of all calls that write.
template <class Sample, class Host, class Call>
void output(Host& host, int32_t reported, Extent extent, Call call) {
  if (reported > kMostElements) return;
  const std::vector<Sample> untouched(static_cast<std::size_t>(std::max(0, reported)), Sample{17});
  std::vector<Sample> once = untouched, again(once.size(), static_cast<Sample>(extent == Extent::kWhole ? 34 : 17));
  const auto same = [](const std::vector<Sample>& a, const std::vector<Sample>& b) {
    return a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Sample)) == 0;
  };
  Sample none = 17;  // stands where nothing may be written
  const int32_t status = call(once.empty() ? &none : once.data());
  require(status == 0 || status == -1, "a status is 0 or -1");
  require(call(again.empty() ? &none : again.data()) == status, "the same call has the same status");
  require(none == 17, "a call of no length writes nothing");
  if (status == 0) {
    require(same(once, again), "the whole length is written, the same each time");
  } else if (extent == Extent::kWhole) {
    require(same(once, untouched), "a refused call writes nothing");
  }
  require(call(nullptr) == (untouched.empty() ? status : -1), "null is refused where something would be written");
  host.output(reported, status, once);
}

template <class Host, class Result, class... Arguments>
void number(Host& host, Result (*function)(Arguments...)) {
  const std::tuple<Arguments...> arguments{host.template about<Arguments>(-70, 300)...};
  host.result(std::apply(function, arguments));
}

template <class Host>
void tap(Host& host, int32_t (*length)(int32_t), int32_t (*data)(int32_t, int32_t, uint8_t*)) {
  const auto level = host.template about<int32_t>(-1, 101), intensity = host.template about<int32_t>(-60, 160);
  output<uint8_t>(host, length(level), Extent::kWhole, [=](uint8_t* out) { return data(level, intensity, out); });
}

template <class Host>
void tone(Host& host) {
  const auto half_periods = host.template about<int32_t>(0, 20), hz = host.template about<int32_t>(50, 400);
  const auto amplitude = host.template about<int32_t>(-150, 150);
  output<uint8_t>(host, get_sine_wave_len(hz, static_cast<float>(half_periods) * 0.5F), Extent::kWhole,
                  [=](uint8_t* out) { return sine(half_periods, hz, amplitude, out); });
}

template <class Host>
void offset_tone(Host& host) {
  const auto hz = host.template about<int32_t>(50, 400), strength = host.template about<int32_t>(-110, 110);
  const auto cycles = host.template about<float>(0, 8);
  output<float>(host, get_sine_wave_len(hz, cycles), Extent::kWhole,
                [=](float* out) { return get_sine(hz, strength, out, cycles); });
}

template <class Host>
void ramp(Host& host) {
  const auto count = host.template about<int32_t>(0, 400);
  const auto start = host.template about<float>(-1, 9), end = host.template about<float>(-1, 9);
  output<float>(host, count, Extent::kWhole,
                [=](float* out) { return getIncreasingStepIntensity(count, out, start, end); });
}

template <class Host>
void mid_transient(Host& host) {
  const auto level = host.template about<int32_t>(0, 100), intensity = host.template about<int32_t>(-20, 120);
  const auto f1 = host.template about<int32_t>(60, 400), a1 = host.template about<int32_t>(-20, 120);
  const auto f2 = host.template about<int32_t>(60, 400), a2 = host.template about<int32_t>(-20, 120);
  const auto zero_ms = host.template about<float>(0, 3);
  output<int32_t>(host, get_wave_func_wave_len(level, f1, f2, zero_ms), Extent::kPart,
                  [=](int32_t* out) { return wave_func(level, intensity, f1, a1, f2, a2, out, zero_ms); });
}

template <class Host>
void any_transient(Host& host) {
  const auto level = host.template about<int32_t>(0, 100), intensity = host.template about<int32_t>(-20, 120);
  const auto f1 = host.template about<int32_t>(60, 400), a1 = host.template about<int32_t>(-20, 120);
  const auto f2 = host.template about<int32_t>(60, 400), a2 = host.template about<int32_t>(-20, 120);
  const auto reverse = host.template about<int32_t>(0, 2);
  const auto c0 = host.template about<float>(0, 3), c1 = host.template about<float>(0, 3);
  const auto c2 = host.template about<float>(0, 3), zero_ms = host.template about<float>(0, 3);
  output<int32_t>(
      host, get_wave_func_wave_len_custom(level, f1, f2, c0, c1, c2, zero_ms), Extent::kPart, [=](int32_t* out) {
        return wave_func_custom(getFrequency(level), intensity, f1, a1, f2, a2, reverse, out, c0, c1, c2, zero_ms);
      });
}

template <class Host>
void widening(Host& host) {
  const int32_t count = std::min(host.template about<int32_t>(0, 40), kMostElements);
  std::vector<uint8_t> source;
  for (int32_t i = 0; i < count; ++i) source.push_back(static_cast<uint8_t>(host.template about<int32_t>(0, 255)));
  output<int32_t>(host, count, Extent::kWhole,
                  [&](int32_t* out) { return transStringDataToInt(source.data(), count, out); });
}

// A 32-bit product, as the header says.
inline int32_t to_samples(int32_t ms) {
  return static_cast<int32_t>(static_cast<uint32_t>(SAMPLE_RATE / 1000) * static_cast<uint32_t>(ms));
}

template <class Host>
void vibration(Host& host) {
  const auto limit = host.template about<int32_t>(0, 10000);
  std::vector<int32_t> record(LRASYNTH_RECORD_LENGTH);
  for (int32_t& field : record) field = host.template about<int32_t>(-10, 100);
  output<uint8_t>(host, to_samples(record[4]), Extent::kWhole,
                  [&](uint8_t* out) { return get_4096_wave(record.data(), out, limit); });
}

template <class Host>
void tap_at(Host& host) {
  const auto start_ms = host.template about<int32_t>(-1, 50), intensity = host.template about<int32_t>(-60, 160);
  const auto level = host.template about<int32_t>(-1, 101);
  const int32_t start = to_samples(start_ms), length = getShortSignalDataLength(level);
  if (start > kMostElements) return;
  output<uint8_t>(host, start >= 0 && length > 0 ? start + length : 0, Extent::kPart,
                  [=](uint8_t* out) { return get_4097_wave(start_ms, intensity, level, out); });
}

// Taps and vibrations with gaps and overlaps; the last is a vibration.
template <class Host>
std::vector<int32_t> make_pattern(Host& host) {
  std::vector<int32_t> pattern;
  const auto add = [&](const std::initializer_list<int32_t>& fields) { pattern.insert(pattern.end(), fields); };
  const int32_t events = host.between(1, 12);
  for (int32_t i = 1, start_ms = 0; i <= events; ++i, start_ms += host.between(0, 200)) {
    const int32_t type = i == events || host.between(0, 2) > 0 ? LRASYNTH_CONTINUOUS : LRASYNTH_TRANSIENT;
    const int32_t duration_ms = host.between(10, 300);
    add({type, start_ms, host.between(0, 120), host.between(-1, 101), duration_ms});
    for (int32_t point = 0; point < 4; ++point)
      add({duration_ms * point / 3, host.between(0, 110), host.between(-55, 55)});
  }
  return pattern;
}

// The compact stream too, where the profile asks for it.
template <class Host>
void long_signal(Host& host) {
  const auto loops = host.template about<int32_t>(0, 3), gap_ms = host.template about<int32_t>(-5, 60);
  const auto limit_ms = host.template about<int32_t>(1500, 80000);
  std::vector<int32_t> pattern = host.pattern();
  pattern.shrink_to_fit();  // so that the sanitizer sees reads beyond
  const auto count = static_cast<int32_t>(pattern.size());
  const int32_t pass = getLongSignalDataLength(loops, gap_ms, pattern.data(), count);
  const int32_t whole = getLongSignalBufferLength(loops, gap_ms, pattern.data(), count);
  const bool stream = IC_TYPE == LRASYNTH_CHIP_EVENT_STREAM;
  require(whole == 0 || (stream ? whole == pass : whole >= pass), "the buffer holds one pass");
  output<uint8_t>(host, whole, stream ? Extent::kWhole : Extent::kPart, [&](uint8_t* out) {
    const int32_t status = getLongSignalData(loops, gap_ms, pattern.data(), out, count, limit_ms);
    const int64_t gap = to_samples(gap_ms);
    if (status == 0 && out != nullptr && !stream && loops > 1 && gap >= 0 && pass > 0) {
      require(std::equal(out, out + pass, out + (loops - 1) * (pass + gap)), "the last copy is the first pass");
    }
    return status;
  });
}

// Windows of a waveform, in blocks of exactly their size, are those parts of the whole; odd ones are refused.
template <class Host, class Read>
void windows(Host& host, const std::vector<uint8_t>& whole, Read read) {
  const auto length = static_cast<int32_t>(whole.size());
  for (int32_t i = 0; i < 4; ++i) {
    const int32_t first = host.between(0, length), count = host.between(0, 1999);
    std::vector<uint8_t> out(static_cast<std::size_t>(count));
    const int64_t drawn = read(first, out.data(), count);
    require(drawn == std::min(count, length - first), "a window is drawn as far as the waveform goes");
    require(std::equal(out.begin(), out.begin() + drawn, whole.begin() + first), "a window is that part of the whole");
  }
  require(read(-1, nullptr, 1) == LRASYNTH_ERROR_NEGATIVE_WINDOW, "a negative start is refused");
  require(read(0, nullptr, -1) == LRASYNTH_ERROR_NEGATIVE_WINDOW, "a negative count is refused");
  require(read(0, nullptr, 1) == (length > 0 ? LRASYNTH_ERROR_NULL_POINTER : 0), "null is refused");
}

inline lrasynth_profile current_profile() { return {IC_TYPE, SAMPLE_RATE, giMotorType, giBoostFlg}; }

template <class Host>
void tap_window(Host& host) {
  const lrasynth_profile profile = current_profile();
  const auto level = host.template about<int32_t>(0, 100), intensity = host.template about<int32_t>(90, 130);
  const int64_t length = lrasynth_tap_length(&profile, level);
  host.result(length);
  if (length < 0 || length > kMostElements) return;
  std::vector<uint8_t> whole(static_cast<std::size_t>(length));
  require(getShortSignalData(level, intensity, whole.data()) == 0, "a tap that has a length can be had");
  windows(host, whole, [&](int64_t first, uint8_t* out, int64_t count) {
    return lrasynth_tap_read(&profile, level, intensity, first, out, count);
  });
}

// A request with the profile in hand.
template <class Host, class Use>
void with_pattern(Host& host, Use use) {
  const auto loops = host.template about<int32_t>(0, 4), gap_ms = host.template about<int32_t>(-10, 60);
  const auto limit_ms = host.template about<int32_t>(-9000, 80000);
  std::vector<int32_t> records = host.pattern();
  records.shrink_to_fit();
  use(current_profile(), {records.data(), static_cast<int32_t>(records.size()), loops, gap_ms, limit_ms});
}

// The whole is what getLongSignalData writes into a cleared buffer, where it does.
template <class Host>
void long_window(Host& host) {
  with_pattern(host, [&](const lrasynth_profile& profile, const lrasynth_pattern& pattern) {
    const int64_t length = lrasynth_pattern_length(&profile, &pattern);
    host.result(length);
    require(length >= 0 || lrasynth_pattern_check(&profile, &pattern, nullptr) < 0, "what is refused has a fault");
    if (length < 0 || length > kMostElements) return;
    std::vector<uint8_t> whole(static_cast<std::size_t>(length)), same(whole.size());
    const auto read = [&](int64_t first, uint8_t* out, int64_t count) {
      return lrasynth_pattern_read(&profile, &pattern, first, out, count);
    };
    require(read(0, whole.data(), length) == length, "the whole can be read at once");
    if (getLongSignalData(pattern.loop_count, pattern.interval_ms, pattern.records, same.data(), pattern.length,
                          LRASYNTH_NO_LIMIT_MS) == 0)
      require(whole == same, "what is read is what getLongSignalData writes");
    windows(host, whole, read);
  });
}

template <class Host>
void long_check(Host& host) {
  with_pattern(host, [&](const lrasynth_profile& profile, const lrasynth_pattern& pattern) {
    int32_t index = 0;
    host.result(lrasynth_pattern_check(&profile, &pattern, &index));
    host.result(index);
  });
}

template <class Host>
void long_length(Host& host, int32_t (*function)(int32_t, int32_t, const int32_t*, int32_t)) {
  const auto loops = host.template about<int32_t>(0, 3), gap_ms = host.template about<int32_t>(-5, 60);
  const std::vector<int32_t> pattern = host.pattern();
  host.result(function(loops, gap_ms, pattern.data(), static_cast<int32_t>(pattern.size())));
}

template <class Host>
struct Call {
  const char* name;
  void (*run)(Host&);
};

#define NUMBER(function)                                   \
  {                                                        \
#function, [](Host & host) { number(host, function); } \
  }
#define TAP(length, data)                               \
  {                                                     \
#data, [](Host & host) { tap(host, length, data); } \
  }

template <class Host>
constexpr Call<Host> kShort[] = {
    // clang-format off
    NUMBER(wave_transform), NUMBER(custom_wave_transform), NUMBER(wave_reverse), NUMBER(getFrequency),
    NUMBER(getFrequency_0832), NUMBER(getFrequency_1040), NUMBER(getFrequency_9595), NUMBER(getFrequency_081540),
    NUMBER(getFrequency_0832_ShortData), NUMBER(getFrequency_1040_ShortData), NUMBER(getFrequency_9595_ShortData),
    NUMBER(getFrequency_0815_ShortData), NUMBER(getFrequency_4096), NUMBER(getFrequencyStepValue), NUMBER(getIntensity),
    NUMBER(getIntensity_0832), NUMBER(getIntensity_1040), NUMBER(getIntensity_9595), NUMBER(getIntensityMax),
    NUMBER(getIntensityMax_0832), NUMBER(getIntensityMax_1040), NUMBER(getIntensityMax_9595), NUMBER(getCycle),
    NUMBER(getC0), NUMBER(getC1), NUMBER(getC2), NUMBER(getF1), NUMBER(getF2), NUMBER(getZeroTime), NUMBER(getA1),
    NUMBER(getA2), NUMBER(get_sine_wave_len), NUMBER(get_wave_func_wave_len), NUMBER(get_wave_func_wave_len_custom),
    // clang-format on
    TAP(getShortSignalDataLength, getShortSignalData),
    TAP(getShortSignalDataLength_0832, getShortSignalData_0832),
    TAP(getShortSignalDataLength_1040, getShortSignalData_1040),
    TAP(getShortSignalDataLength_9595, getShortSignalData_9595),
    TAP(get_custom_wave_len, shortWave_func),
    TAP(get_wav_len_high_frequency, shortWave_func_custom),
    TAP(get_custom_wave_len_0832, shortWave_func_custom_0832),
    TAP(get_custom_wave_len_9595, shortWave_func_custom_9595),
    {"wave_func", mid_transient},
    {"wave_func_custom", any_transient},
    {"transStringDataToInt", widening},
    {"get_4096_wave", vibration},
    {"get_4097_wave", tap_at},
    {"sine", tone},
    {"get_sine", offset_tone},
    {"getIncreasingStepIntensity", ramp},
    {"lrasynth_tap_read", tap_window},
};

template <class Host>
constexpr Call<Host> kLong[] = {
    {"getLongSignalDataLength", [](Host& host) { long_length(host, getLongSignalDataLength); }},
    {"getLongSignalBufferLength", [](Host& host) { long_length(host, getLongSignalBufferLength); }},
    {"getLongSignalData", long_signal},
    {"lrasynth_pattern_read", long_window}};

// Apart from what renders, so that a new fault changes the digest of no bytes.
template <class Host>
constexpr Call<Host> kChecks[] = {{"lrasynth_pattern_check", long_check}};

#undef NUMBER
#undef TAP

}  // namespace calls
