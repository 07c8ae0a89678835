// What odd input gets: a defined outcome, within the reported extent. Arrays are heap blocks of exactly the size that
// the library reports, so that the address sanitizer sees every step beyond.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <vector>

#include "lrasynth.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Integers = std::vector<int32_t>;
using testing::Each;

constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr int32_t kPerMs = 24;
constexpr uint8_t kUntouched = 0xA5;

class OddInput : public testing::Test {
 protected:
  void TearDown() override {
    setMotorType(1040);
    setChipType(0);
    setBoostFlg(0);
  }
};

// Fails unless the call returns 0 and writes every one of `length` elements.
template <class Sample>
std::vector<Sample> expect_filled(int32_t length, const std::function<int32_t(Sample*)>& call) {
  std::vector<Sample> once(static_cast<size_t>(length), Sample{0x11});
  std::vector<Sample> again(static_cast<size_t>(length), Sample{0x22});
  EXPECT_EQ(call(once.data()), 0);
  EXPECT_EQ(call(again.data()), 0);
  EXPECT_EQ(once, again);
  return once;
}

struct Point {
  int32_t ms;
  int32_t intensity = 80;
  int32_t offset = 0;
};

using Points = std::array<Point, 4>;

struct Pattern {
  Integers values;

  // A record; what is not given is 0.
  Pattern& add(std::initializer_list<int32_t> fields) {
    values.resize(values.size() + 17);
    std::copy(fields.begin(), fields.end(), values.end() - 17);
    return *this;
  }
  Pattern& vibration(int32_t start_ms, int32_t duration_ms, const Points& points) {
    add({4096, start_ms, 0, 0, duration_ms});
    auto field = values.end() - 12;
    for (const Point& point : points) {
      for (const int32_t value : {point.ms, point.intensity, point.offset}) *field++ = value;
    }
    return *this;
  }
  Pattern& vibration(int32_t start_ms, int32_t duration_ms) {
    return vibration(start_ms, duration_ms, {{{0}, {duration_ms / 3}, {duration_ms / 2}, {duration_ms}}});
  }
  Pattern& tap(int32_t start_ms, int32_t level) { return add({4097, start_ms, 80, level}); }

  int32_t length() const { return static_cast<int32_t>(values.size()); }
  int32_t plain_length(int32_t loops = 1, int32_t gap_ms = 0) const {
    return getLongSignalDataLength(loops, gap_ms, values.data(), length());
  }
  int32_t buffer_length(int32_t loops = 1, int32_t gap_ms = 0) const {
    return getLongSignalBufferLength(loops, gap_ms, values.data(), length());
  }
  Bytes render(int32_t expected_status = 0, int32_t loops = 1, int32_t gap_ms = 0) const {
    const Integers exact(values);
    Bytes out(static_cast<size_t>(buffer_length(loops, gap_ms)), kUntouched);
    EXPECT_EQ(getLongSignalData(loops, gap_ms, exact.data(), out.data(), length(), 20000), expected_status);
    return out;
  }
};

Bytes part(const Bytes& bytes, int32_t from, int32_t to) { return {bytes.begin() + from, bytes.begin() + to}; }

Bytes tap_bytes(int32_t level) {
  Bytes out(static_cast<size_t>(getShortSignalDataLength(level)));
  getShortSignalData(level, getIntensity(level, 80), out.data());
  return out;
}

TEST_F(OddInput, FloatsOutOfRangeSaturateAndNanIsZero) {
  const struct {
    float cycles;
    int32_t count;
  } rows[] = {{1e30F, kMax}, {kInfinity, kMax}, {-1e30F, 0}, {kNan, 0}, {-kInfinity, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(get_sine_wave_len(170, row.cycles), row.count) << row.cycles;
    EXPECT_EQ(get_wave_func_wave_len_custom(50, 0, 0, 0, 0, 0, row.cycles), row.count) << row.cycles;
    EXPECT_EQ(get_wave_func_wave_len_custom(50, 300, 100, row.cycles, 0, 0, 0), row.count) << row.cycles;
  }
  for (const auto curve : {getFrequency_0832, getFrequency_1040, getFrequency_081540}) {
    EXPECT_EQ(curve(kMax, kMax), kMax);
    EXPECT_EQ(curve(kMin, kMin), kMin);
  }
  EXPECT_EQ(getFrequency_9595(kMin, kMin), kMin);
  for (const auto curve : {getFrequency_0832_ShortData, getFrequency_1040_ShortData, getFrequency_9595_ShortData,
                           getFrequency_0815_ShortData}) {
    EXPECT_EQ(curve(kMax), kMax);
  }
}

TEST_F(OddInput, HugeIntensitiesDoNotOverflow) {
  EXPECT_EQ(getA1(56, kMax), kMax);
  EXPECT_EQ(getA1(56, kMin), kMin);
  std::vector<float> tone(static_cast<size_t>(get_sine_wave_len(170, 1)));
  ASSERT_EQ(get_sine(170, kMax, tone.data(), 1), 0);
  EXPECT_EQ(*std::max_element(tone.begin(), tone.end()), 382);
  EXPECT_NEAR(*std::min_element(tone.begin(), tone.end()), -2.55F * 2147483647.0F, 1e6F);
  for (const int32_t motor : {832, 1040, 9595}) {
    setMotorType(motor);
    for (const int32_t intensity : {kMin, kMax}) {
      for (int32_t level = 0; level <= 100; level += 5) {
        expect_filled<uint8_t>(getShortSignalDataLength(level),
                               [=](uint8_t* out) { return getShortSignalData(level, intensity, out); });
      }
      Pattern().vibration(0, 30, {{{0, intensity}, {10, intensity / -2}, {20, 7}, {30, intensity}}}).render();
    }
  }
  expect_filled<uint8_t>(get_sine_wave_len(170, 1), [](uint8_t* out) { return sine(2, 170, kMin, out); });
}

TEST_F(OddInput, WithoutAPositiveDriveFrequencyThereIsNothing) {
  setMotorType(1234);
  EXPECT_EQ(getFrequency(0), 0);
  EXPECT_EQ(get_sine_wave_len(0, 1), 0);
  EXPECT_EQ(get_custom_wave_len(0), 0);
  EXPECT_EQ(get_wav_len_high_frequency(0), 0);
  EXPECT_EQ(get_wave_func_wave_len(0, 300, 100, 2.5F), 0);
  Bytes byte(1, kUntouched);
  std::vector<float> value(1, 1);
  Integers integer(1, 1);
  EXPECT_EQ(shortWave_func(0, 80, byte.data()), 0);
  EXPECT_EQ(shortWave_func_custom(0, 80, byte.data()), 0);
  EXPECT_EQ(getShortSignalData_1040(0, 80, byte.data()), 0);
  EXPECT_EQ(sine(2, 0, 80, byte.data()), 0);
  EXPECT_EQ(get_sine(0, 80, value.data(), 1), 0);
  EXPECT_EQ(wave_func(0, 80, 300, 10, 100, 10, integer.data(), 2.5F), 0);
  for (const int32_t hz : {0, -170, kMin}) {
    EXPECT_EQ(wave_func_custom(hz, 80, 300, 10, 100, 10, 0, integer.data(), 1, 1, 1, 2.5F), 0) << hz;
  }
  EXPECT_EQ(byte[0], kUntouched);
  EXPECT_EQ(value[0], 1);
  EXPECT_EQ(integer[0], 1);
}

TEST_F(OddInput, NegativeCountsAndZeroTimesCountAsZero) {
  EXPECT_EQ(get_sine_wave_len(-170, 1), 0);
  EXPECT_EQ(get_sine_wave_len(170, -1), 0);
  EXPECT_EQ(sine(-4, 170, 80, nullptr), 0);
  EXPECT_EQ(get_sine(170, 80, nullptr, -1), 0);
  EXPECT_EQ(getIncreasingStepIntensity(-1, nullptr, 0, 1), 0);
  EXPECT_EQ(transStringDataToInt(nullptr, -1, nullptr), 0);
  const int32_t length = get_wave_func_wave_len(50, 300, 100, 0);
  EXPECT_EQ(get_wave_func_wave_len(50, 300, 100, -5), length);
  EXPECT_EQ(get_wave_func_wave_len_custom(50, -300, 100, 1, 3, 0.5F, -5),
            get_wave_func_wave_len_custom(50, 0, 100, 1, 3, 0.5F, 0));
  const auto with_zero_time = [&](float ms) {
    return expect_filled<int32_t>(length, [&](int32_t* out) { return wave_func(50, 80, 300, 10, 100, 10, out, ms); });
  };
  EXPECT_EQ(with_zero_time(-5), with_zero_time(0));
}

TEST_F(OddInput, AnySampleRateFillsExactlyTheReportedLength) {
  for (const int32_t rate : {kMin, -24000, -1, 0, 1, 999, 1000, 7919, 16000, 44100, 96000, 10000000}) {
    SAMPLE_RATE = rate;
    for (int32_t level = 0; level <= 100; level += rate > 96000 ? 50 : 1) {
      expect_filled<uint8_t>(get_custom_wave_len(level), [=](uint8_t* out) { return shortWave_func(level, 80, out); });
      expect_filled<uint8_t>(get_wav_len_high_frequency(level),
                             [=](uint8_t* out) { return shortWave_func_custom(level, 80, out); });
    }
    if (rate > 96000) break;
    Pattern().vibration(1, 20).tap(5, 50).vibration(2, 30).render(rate < 0 ? -1 : 0, 2, 1);
  }
}

TEST_F(OddInput, RequestsShorterThanARecordAreEmpty) {
  const Integers values(16, 4096);
  for (const int32_t length : {16, 1, 0, -1, kMin}) {
    const Integers exact(values.begin(), values.begin() + std::max(0, length));
    EXPECT_EQ(getLongSignalDataLength(3, 5, exact.data(), length), 0);
    EXPECT_EQ(getLongSignalBufferLength(3, 5, exact.data(), length), 0);
    uint8_t byte = kUntouched;
    EXPECT_EQ(getLongSignalData(3, 5, exact.data(), &byte, length, 1000), 0);
    EXPECT_EQ(byte, kUntouched);
  }
}

TEST_F(OddInput, TypeCodesTooCloseToTheEndArePassedOverInSamples) {
  Pattern longest = Pattern().vibration(0, 4096);
  for (const int32_t code : {0, 4097}) {
    longest.values[16] = code;  // the last frequency offset, clamped
    EXPECT_EQ(longest.plain_length(), 4096 * kPerMs);
    EXPECT_EQ(longest.buffer_length(), 4096 * kPerMs);
    EXPECT_NE(part(longest.render(), 4094 * kPerMs, 4096 * kPerMs), Bytes(2 * kPerMs, kUntouched));
  }
}

TEST_F(OddInput, CompactStreamReadsZerosOutsideTheArray) {
  setChipType(11);
  const struct {
    Integers values;
    Bytes stream;
  } rows[] = {
      // At the start there is no predecessor, delta is the start itself; beyond the end everything is 0.
      {{4096}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {{4097, 7, 80}, {12, 0, 0, 7, 0, 80, 5, 0}},
      // The second event's predecessor would lie before the array.
      {{4096, 1, 4097, 9, 33}, {24, 0, 0, 1, 0, 0, 33, 0, 0, 9, 0, 33, 5, 0}},
  };
  for (const auto& row : rows) {
    const Pattern pattern = {row.values};
    EXPECT_EQ(pattern.plain_length(), pattern.buffer_length());
    const Bytes stream = pattern.render();
    EXPECT_EQ(part(stream, 2, pattern.buffer_length()), part(row.stream, 2, pattern.buffer_length()));
  }
}

TEST_F(OddInput, EventsBeforeThePatternAreRefusedAtTheirTurn) {
  const Bytes first = Pattern().vibration(0, 20).render();
  const Bytes continuous = Pattern().vibration(0, 20).vibration(-1, 5).vibration(30, 9).tap(50, 50).render(-1);
  EXPECT_EQ(part(continuous, 0, 20 * kPerMs), first);
  EXPECT_THAT(part(continuous, 20 * kPerMs, static_cast<int32_t>(continuous.size())), Each(kUntouched));
  const Bytes transient = Pattern().tap(5, 50).tap(-1, 50).tap(40, 50).vibration(60, 20).render(-1);
  EXPECT_THAT(part(transient, 0, 5 * kPerMs), Each(kUntouched));
  EXPECT_NE(part(transient, 5 * kPerMs, 6 * kPerMs), Bytes(kPerMs, kUntouched));
  EXPECT_THAT(part(transient, 40 * kPerMs, 41 * kPerMs), Each(kUntouched));
  uint8_t byte = kUntouched;
  EXPECT_EQ(get_4097_wave(-1, 80, 50, &byte), -1);
  EXPECT_EQ(byte, kUntouched);
}

TEST_F(OddInput, CurvesAreDrawnWhereTheyFallInsideTheEvent) {
  const struct {
    Points points;
    int32_t to_ms;  // up to where something is drawn; rest beyond
  } rows[] = {
      {{{{0}, {10}, {20}, {30}}}, 30},     // short of the duration
      {{{{0}, {10}, {20}, {90}}}, 50},     // beyond it
      {{{{60}, {70}, {80}, {90}}}, 30},    // only differences count
      {{{{0}, {0}, {-9}, {-9}}}, 0},       // backwards
      {{{{0}, {30}, {20}, {40}}}, 40},     // back and on
      {{{{0}, {-10}, {-10}, {20}}}, 20},   // from before the event
      {{{{0}, {kMax}, {kMin}, {-1}}}, 0},  // differences that wrap to less than nothing
      {{{{0}, {-1}, {-40}, {-20}}}, 0},    // all of it before the event
  };
  for (const auto& row : rows) {
    const Bytes out = Pattern().vibration(0, 50, row.points).render();
    ASSERT_EQ(out.size(), 50U * kPerMs);
    EXPECT_EQ(out[0], 0);
    EXPECT_THAT(part(out, row.to_ms * kPerMs + (row.to_ms == 0 ? 1 : 0), 50 * kPerMs), Each(255));
    const int32_t last_ms = std::max(0, row.to_ms - 2);
    EXPECT_NE(part(out, last_ms * kPerMs, (last_ms + 2) * kPerMs), Bytes(2 * kPerMs, 255));
  }
}

TEST_F(OddInput, TransientsAreCutAtTheEndOfPassOrFurthestVibration) {
  const Bytes tap = tap_bytes(60);
  const auto whole = static_cast<int32_t>(tap.size());
  ASSERT_NE(whole % kPerMs, 0);
  const Bytes alone = Pattern().tap(5, 60).render();
  EXPECT_EQ(static_cast<int32_t>(alone.size()), 5 * kPerMs + whole / kPerMs * kPerMs);
  EXPECT_EQ(part(alone, 5 * kPerMs, static_cast<int32_t>(alone.size())), part(tap, 0, whole / kPerMs * kPerMs));
  const Bytes past_a_vibration = Pattern().vibration(0, 10).tap(9, 60).vibration(0, 2).render();
  EXPECT_EQ(past_a_vibration.size(), 10U * kPerMs);
  EXPECT_EQ(part(past_a_vibration, 9 * kPerMs, 10 * kPerMs), part(tap, 0, kPerMs));
  EXPECT_EQ(Pattern().tap(90, 60).vibration(0, 10).render(), Pattern().vibration(0, 10).render());
}

TEST_F(OddInput, VibrationsBeyondTheLastRecordAreDrawnWhole) {
  const Pattern pattern = Pattern().vibration(0, 100).tap(0, 60);
  EXPECT_LT(pattern.plain_length(), 100 * kPerMs);
  EXPECT_EQ(pattern.buffer_length(), 100 * kPerMs);
  EXPECT_EQ(part(pattern.render(), 50 * kPerMs, 100 * kPerMs),
            part(Pattern().vibration(0, 100).render(), 50 * kPerMs, 100 * kPerMs));
}

TEST_F(OddInput, LayoutsThatDoNotFitAreRefused) {
  const struct {
    int32_t chip;
    int32_t loops;
    int32_t gap_ms;
    int32_t start_ms;
  } rows[] = {{0, 2, -21, 0},   // the copy would start before the buffer
              {0, kMax, 0, 0},  // too large
              {0, 2, 85000000, 8000000},
              {0, 300, -1, 89478000},  // a start near 2^31 samples
              {11, kMax, 0, 0}};
  for (const auto& row : rows) {
    setChipType(row.chip);
    const Pattern pattern = Pattern().vibration(row.start_ms, 20);
    EXPECT_EQ(pattern.buffer_length(row.loops, row.gap_ms), 0);
    EXPECT_TRUE(pattern.render(-1, row.loops, row.gap_ms).empty());
  }
  EXPECT_EQ(Pattern().vibration(0, 20).plain_length(kMax), 0);
  setChipType(0);
  EXPECT_EQ(Pattern().vibration(0, 20).plain_length(2, -21), 20 * kPerMs);
}

TEST_F(OddInput, NullPointersAreRefusedWhereSomethingWouldBeReadOrWritten) {
  const Pattern pattern = Pattern().vibration(0, 20);
  uint8_t byte = 0;
  for (const int32_t chip : {0, 11}) {
    setChipType(chip);
    EXPECT_EQ(getLongSignalDataLength(1, 0, nullptr, 17), 0);
    EXPECT_EQ(getLongSignalBufferLength(1, 0, nullptr, 17), 0);
    EXPECT_EQ(getLongSignalData(1, 0, nullptr, &byte, 17, 1000), -1);
    EXPECT_EQ(getLongSignalData(1, 0, pattern.values.data(), nullptr, 17, 1000), -1);
  }
  int32_t integer = 0;
  EXPECT_EQ(get_4096_wave(nullptr, &byte, 0), -1);
  EXPECT_EQ(get_4096_wave(pattern.values.data(), nullptr, 0), -1);
  EXPECT_EQ(get_4097_wave(0, 80, 50, nullptr), -1);
  EXPECT_EQ(sine(2, 170, 80, nullptr), -1);
  EXPECT_EQ(get_sine(170, 80, nullptr, 1), -1);
  EXPECT_EQ(getIncreasingStepIntensity(1, nullptr, 0, 1), -1);
  EXPECT_EQ(wave_func(50, 80, 300, 10, 100, 10, nullptr, 2.5F), -1);
  EXPECT_EQ(wave_func_custom(170, 80, 300, 10, 100, 10, 0, nullptr, 1, 1, 1, 2.5F), -1);
  EXPECT_EQ(transStringDataToInt(nullptr, 1, &integer), -1);
  EXPECT_EQ(transStringDataToInt(&byte, 1, nullptr), -1);
  for (const auto writer :
       {getShortSignalData, getShortSignalData_0832, getShortSignalData_1040, getShortSignalData_9595, shortWave_func,
        shortWave_func_custom, shortWave_func_custom_0832, shortWave_func_custom_9595}) {
    EXPECT_EQ(writer(50, 80, nullptr), -1);
  }
}

TEST_F(OddInput, RequestsOfAnyLengthAreServed) {
  Pattern many;
  for (int32_t i = 0; i < 6000; ++i) many.vibration(2 * i, 2);
  ASSERT_GT(many.length(), 100000);
  const Bytes out = many.render();
  ASSERT_EQ(out.size(), 12000U * kPerMs);
  EXPECT_EQ(part(out, 11998 * kPerMs, 12000 * kPerMs), Pattern().vibration(0, 2).render());
}

TEST_F(OddInput, ThirtyTwoBitProductsWrap) {
  EXPECT_EQ(Pattern().vibration(0, 178956971).buffer_length(), 178956971 * int64_t{kPerMs} - (int64_t{1} << 32));
  EXPECT_EQ(Pattern().vibration(0, 100000000).buffer_length(), 0);
  const Bytes wrapped = Pattern().vibration(178956971, 5).vibration(0, 10).render();
  EXPECT_EQ(wrapped.size(), 10U * kPerMs);
  EXPECT_EQ(setBoostFlg(kMin), 0);
  EXPECT_EQ(getBoostFlg(), -kMax);
}

}  // namespace
