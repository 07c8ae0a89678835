// What odd input gets: a defined outcome, within the reported extent. Requests and outputs are heap blocks of exactly
// the size that the library reports, so that the address sanitizer sees every step beyond.
#include <cmath>

#include "support.h"

namespace {

constexpr int32_t kMin = INT32_MIN, kMax = INT32_MAX;
constexpr std::size_t kPerMs = 24;

Integers vibration(int32_t start_ms, int32_t duration_ms) {
  return curve(start_ms, duration_ms, {0, duration_ms / 3, duration_ms / 2, duration_ms}, {80, 80, 80, 80});
}
Integers tap_at(int32_t start_ms) { return transient(start_ms, 80, 60); }

Rendered render(const std::vector<Integers>& records) { return pattern(request_of(records)); }

TEST(OddInput, FloatsOutOfRangeSaturateAndNanIsZero) {
  const std::pair<float, int32_t> rows[] = {
      {1e30F, kMax}, {INFINITY, kMax}, {-1e30F, kMin}, {NAN, 0}, {-INFINITY, kMin}};
  for (const auto& [value, count] : rows) {
    EXPECT_EQ(get_sine_wave_len(170, value), count) << value;
    EXPECT_EQ(get_wave_func_wave_len_custom(50, 0, 0, 0, 0, 0, value), count) << value;
    EXPECT_EQ(get_wave_func_wave_len_custom(50, 300, 100, value, 0, 0, 0), count) << value;
  }
  for (const auto hertz : {getFrequency_0832, getFrequency_1040, getFrequency_9595, getFrequency_081540}) {
    for (const int32_t limit : {kMin, kMax}) EXPECT_EQ(hertz(limit, limit), limit);
  }
  EXPECT_THAT(Integers({getFrequency_0832_ShortData(kMax), getFrequency_1040_ShortData(kMax),
                        getFrequency_9595_ShortData(kMax), getFrequency_0815_ShortData(kMax)}),
              Each(kMax));
}

TEST(OddInput, HugeValuesDoNotOverflow) {
  for (const int32_t limit : {kMin, kMax}) EXPECT_EQ(getA1(56, limit), limit);
  const auto tone = filled<float>(141, [](float* out) { return get_sine(170, kMax, out, 1); });
  EXPECT_EQ(*std::max_element(tone.begin(), tone.end()), 382);
  EXPECT_NEAR(*std::min_element(tone.begin(), tone.end()), -2.55F * 2147483647.0F, 1e6F);
  for (const int32_t motor : {832, 1040, 9595}) {
    const ScopedProfile profile(motor);
    for (const int32_t intensity : {kMin, kMax}) {
      for (int32_t level = 0; level <= 100; level += 5) tap(level, intensity);
      EXPECT_EQ(pattern(curve(0, 30, {0, 10, 20, 30}, {0, intensity, 7, intensity})).status, 0);
    }
  }
  // Phases beyond any estimate.
  filled<uint8_t>(get_sine_wave_len(30000, 40000), [](uint8_t* out) { return sine(80000, 30000, kMin, out); });
  filled<int32_t>(get_wave_func_wave_len_custom(50, 30000, 0, 0, 4e4F, 0, 0),
                  [](int32_t* out) { return wave_func_custom(170, 0, 30000, 9, 0, 0, 0, out, 0, 4e4F, 0, 0); });
}

TEST(OddInput, WithoutAPositiveDriveFrequencyThereIsNothing) {
  const ScopedProfile profile(1234);
  EXPECT_THAT(
      Integers({getFrequency(0), get_custom_wave_len(0), get_wav_len_high_frequency(0),
                getShortSignalDataLength_1040(0), get_sine_wave_len(0, 1), get_wave_func_wave_len(0, 300, 100, 2.5F),
                shortWave_func(0, 80, nullptr), shortWave_func_custom(0, 80, nullptr),
                getShortSignalData_1040(0, 80, nullptr), sine(2, 0, 80, nullptr), get_sine(0, 80, nullptr, 1),
                wave_func(0, 80, 300, 10, 100, 10, nullptr, 2.5F)}),
      Each(0));
  for (const int32_t hz : {0, -170, kMin}) {
    EXPECT_EQ(wave_func_custom(hz, 80, 300, 10, 100, 10, 0, nullptr, 1, 1, 1, 2.5F), 0) << hz;
  }
}

// Lengths are plain arithmetic; what draws draws nothing for a negative piece and at most the length.
TEST(OddInput, NegativeCountsAndZeroTimesShortenTheWhole) {
  EXPECT_THAT(Integers({get_sine_wave_len(170, -2), get_sine_wave_len(-170, 1),
                        get_wave_func_wave_len_custom(50, 300, 100, 1, 1, 0.5F, -2.5F),
                        get_wave_func_wave_len_custom(50, 300, 100, -1, 1, 0.5F, 2.5F),
                        get_wave_func_wave_len(50, -300, 100, 0)}),
              ElementsAre(-282, -141, 281, 119, 221));
  EXPECT_THAT(Integers({sine(-4, 170, 80, nullptr), get_sine(170, 80, nullptr, -1),
                        wave_func(50, 80, 300, 10, 100, 10, nullptr, -50),
                        getIncreasingStepIntensity(-1, nullptr, 0, 1), transStringDataToInt(nullptr, -1, nullptr)}),
              Each(0));
  const auto drawn = filled<int32_t>(
      119, [](int32_t* out) { return wave_func_custom(170, 50, 300, 10, 100, 10, 0, out, -1, 1, 0.5F, 2.5F); });
  EXPECT_THAT(slice(drawn, 1, 60), Each(255));
  EXPECT_NE(drawn[70], 255);
}

TEST(OddInput, AnySampleRateFillsExactlyTheReportedLength) {
  for (const int32_t rate : {kMin, -24000, -1, 0, 1, 999, 1000, 7919, 16000, 44100, 96000, 10000000}) {
    const ScopedProfile profile(1040);
    SAMPLE_RATE = rate;
    EXPECT_EQ(get_custom_wave_len(50) < 0, rate < -1);
    const bool huge = rate > 96000;
    for (int32_t level = 0; level <= 100; level += huge ? 50 : 1) {
      filled<uint8_t>(get_custom_wave_len(level), [=](uint8_t* out) { return shortWave_func(level, 80, out); });
      filled<uint8_t>(get_wav_len_high_frequency(level),
                      [=](uint8_t* out) { return shortWave_func_custom(level, 80, out); });
    }
    filled<float>(9, [](float* out) { return getIncreasingStepIntensity(9, out, 0, 1); });
    if (huge) continue;
    for (const Integers& last : {vibration(2, 30), tap_at(30)}) {
      const Integers request = request_of({vibration(1, 20), tap_at(5), last});
      EXPECT_EQ(pattern(request, 2, 1, 1000).status, rate < 0 ? -1 : 0) << rate;
    }
  }
}

TEST(OddInput, RequestsShorterThanARecordAreEmpty) {
  for (const int32_t length : {16, 1, 0, -1, kMin}) {
    const Integers exact(static_cast<std::size_t>(std::max(1, length)), 4096);
    Bytes bytes(2, kUntouched);
    EXPECT_EQ(getLongSignalDataLength(3, 5, exact.data(), length), 0);
    EXPECT_EQ(getLongSignalBufferLength(3, 5, exact.data(), length), 0);
    EXPECT_EQ(getLongSignalData(3, 5, exact.data(), bytes.data(), length, 1000), 0);
    EXPECT_THAT(bytes, Each(kUntouched));
    if (length > 0) continue;
    const ScopedProfile profile(1040, 11);
    EXPECT_EQ(getLongSignalBufferLength(3, 5, exact.data(), length), 2);
    EXPECT_EQ(getLongSignalData(3, 5, exact.data(), bytes.data(), length, 1000), 0);
    EXPECT_THAT(bytes, Each(0));
  }
}

TEST(OddInput, TypeCodesTooCloseToTheEndArePassedOverInSamples) {
  Integers longest = vibration(0, 4096);
  for (const int32_t code : {0, 4097}) {
    longest[16] = code;  // the last frequency offset, clamped
    const Rendered rendered = pattern(longest);
    EXPECT_EQ(rendered.status, 0);
    ASSERT_EQ(rendered.bytes.size(), 4096 * kPerMs);
    EXPECT_NE(slice(rendered.bytes, 4095 * kPerMs, kPerMs), Bytes(kPerMs, kUntouched));
  }
}

TEST(OddInput, EventsBeforeThePatternAreRefused) {
  for (const Integers& early : {vibration(-1, 5), tap_at(-1)}) {
    const Integers request = request_of({vibration(0, 20), early, tap_at(5), vibration(60, 20)});
    const auto length = static_cast<int32_t>(request.size());
    uint8_t byte = kUntouched;
    EXPECT_EQ(getLongSignalBufferLength(1, 0, request.data(), length), 0);
    EXPECT_EQ(getLongSignalData(1, 0, request.data(), &byte, length, 1000), -1);
    EXPECT_EQ(byte, kUntouched);
  }
  EXPECT_EQ(getLongSignalDataLength(1, 0, vibration(-9, 5).data(), 17), -4 * 24);
  uint8_t byte = kUntouched;
  EXPECT_EQ(get_4097_wave(-1, 80, 50, &byte), -1);
  EXPECT_EQ(byte, kUntouched);
}

TEST(OddInput, CurvesAreDrawnWhereTheyFallInsideTheEvent) {
  const struct {
    Integers times;
    std::size_t end_ms;  // of what is drawn; rest beyond
  } rows[] = {{{0, 10, 20, 30}, 30}, {{0, 10, 20, 90}, 50}, {{60, 70, 80, 90}, 30},   {{0, 0, -9, -9}, 0},
              {{0, 30, 20, 40}, 40}, {{0, -9, -9, 20}, 20}, {{0, kMax, kMin, -1}, 0}, {{0, -1, -40, -20}, 0}};
  for (const auto& row : rows) {
    const Bytes out = pattern(curve(0, 50, row.times, {80, 80, 80, 80})).bytes;
    ASSERT_EQ(out.size(), 50 * kPerMs);
    const std::size_t end = std::max<std::size_t>(1, row.end_ms * kPerMs);
    EXPECT_EQ(out[0], 0);
    EXPECT_THAT(slice(out, end, out.size() - end), Each(255));
    EXPECT_TRUE(row.end_ms == 0 || slice(out, end - 48, 48) != Bytes(48, 255));
  }
}

TEST(OddInput, TransientsAreCutAtTheEndOfPassOrFurthestVibration) {
  const Bytes whole = tap(60, 64);
  ASSERT_NE(whole.size() % kPerMs, 0U);
  const std::size_t cut = whole.size() / kPerMs * kPerMs;
  const Bytes alone = render({tap_at(5)}).bytes;
  ASSERT_EQ(alone.size(), 5 * kPerMs + cut);
  EXPECT_EQ(slice(alone, 5 * kPerMs, cut), slice(whole, 0, cut));
  const Bytes in_vibration = render({vibration(0, 10), tap_at(9), vibration(0, 2)}).bytes;
  ASSERT_EQ(in_vibration.size(), 10 * kPerMs);
  EXPECT_EQ(slice(in_vibration, 9 * kPerMs, kPerMs), slice(whole, 0, kPerMs));
  EXPECT_EQ(render({tap_at(90), vibration(0, 10)}).bytes, pattern(vibration(0, 10)).bytes);
  // A vibration that ends after the last record is drawn whole.
  const Bytes longer = render({vibration(0, 100), tap_at(0)}).bytes;
  ASSERT_EQ(longer.size(), 100 * kPerMs);
  EXPECT_EQ(slice(longer, 50 * kPerMs, 1200), slice(pattern(vibration(0, 100)).bytes, 50 * kPerMs, 1200));
}

TEST(OddInput, LayoutsThatDoNotFitAreRefused) {
  const int32_t rows[][4] = {
      {0, 2, -21, 0}, {0, kMax, 0, 0}, {0, 2, 85000000, 8000000}, {0, 300, -1, 89478000}, {11, kMax, 0, 0}};
  for (const auto& [chip, loops, gap_ms, start_ms] : rows) {
    const ScopedProfile profile(1040, chip);
    const Integers exact = vibration(start_ms, 20);
    uint8_t byte = kUntouched;
    EXPECT_EQ(getLongSignalBufferLength(loops, gap_ms, exact.data(), 17), 0);
    EXPECT_EQ(getLongSignalData(loops, gap_ms, exact.data(), &byte, 17, 1000), -1);
    EXPECT_EQ(byte, kUntouched);
  }
}

TEST(OddInput, NullPointersAreRefusedWhereSomethingWouldBeReadOrWritten) {
  const Integers exact = vibration(0, 20);
  uint8_t byte = 0;
  int32_t integer = 0;
  for (const int32_t chip : {0, 11}) {
    const ScopedProfile profile(1040, chip);
    EXPECT_EQ(getLongSignalDataLength(1, 0, nullptr, 17), 0);
    EXPECT_EQ(getLongSignalBufferLength(1, 0, nullptr, 17), 0);
    EXPECT_EQ(getLongSignalData(1, 0, nullptr, &byte, 17, 1000), -1);
    EXPECT_EQ(getLongSignalData(1, 0, exact.data(), nullptr, 17, 1000), -1);
  }
  EXPECT_THAT(
      Integers({sine(2, 170, 80, nullptr), getIncreasingStepIntensity(1, nullptr, 0, 1), get_sine(170, 80, nullptr, 1),
                transStringDataToInt(nullptr, 1, &integer), get_4097_wave(0, 80, 50, nullptr),
                transStringDataToInt(&byte, 1, nullptr), get_4096_wave(nullptr, &byte, 0),
                get_4096_wave(exact.data(), nullptr, 0), wave_func(50, 80, 300, 10, 100, 10, nullptr, 2.5F),
                wave_func_custom(170, 80, 300, 10, 100, 10, 0, nullptr, 1, 1, 1, 2.5F)}),
      Each(-1));
  for (const auto write :
       {getShortSignalData, getShortSignalData_0832, getShortSignalData_1040, getShortSignalData_9595, shortWave_func,
        shortWave_func_custom, shortWave_func_custom_0832, shortWave_func_custom_9595}) {
    EXPECT_EQ(write(50, 80, nullptr), -1);
  }
}

TEST(OddInput, RequestsOfAnyLengthAreServed) {
  std::vector<Integers> many;
  for (int32_t i = 0; i < 6000; ++i) many.push_back(vibration(2 * i, 2));
  const Bytes out = render(many).bytes;  // of 102 000 integers
  ASSERT_EQ(out.size(), 12000 * kPerMs);
  EXPECT_EQ(slice(out, 11998 * kPerMs, 2 * kPerMs), pattern(vibration(0, 2)).bytes);
}

}  // namespace
