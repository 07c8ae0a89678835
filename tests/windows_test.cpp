// SPDX-License-Identifier: Apache-2.0
// Windows with the profile in hand: how far they reach, why they are refused, and that nothing but the arguments
// counts. That they are parts of the documented waveforms is checked with all other calls.
#include <thread>

#include "digest.h"
#include "support.h"

namespace {

constexpr int32_t kMax = INT32_MAX;

lrasynth_pattern pattern_of(const Integers& records, int32_t loops = 1, int32_t gap_ms = 0, int32_t limit_ms = -1) {
  return {records.data(), static_cast<int32_t>(records.size()), loops, gap_ms, limit_ms};
}

Bytes documented(const lrasynth_pattern& p) {
  Bytes out(static_cast<std::size_t>(getLongSignalBufferLength(p.loop_count, p.interval_ms, p.records, p.length)));
  EXPECT_EQ(getLongSignalData(p.loop_count, p.interval_ms, p.records, out.data(), p.length, LRASYNTH_NO_LIMIT_MS), 0);
  return out;
}

// What becomes of a 128 hangs on the code before it, and so does what becomes of the next 128.
TEST(Windows, LookBackWhereACodeHangsOnTheOneBefore) {
  const ScopedProfile restored(LRASYNTH_MOTOR_1040);
  for (const int32_t rate : {24000, 96000}) {
    SAMPLE_RATE = rate;
    const lrasynth_profile profile = {0, rate, LRASYNTH_MOTOR_1040, 1};
    for (const int32_t intensity : {100, 102, 104}) {
      const Bytes whole = tap(0, intensity);
      for (std::size_t i = 0; i < whole.size(); ++i) {
        uint8_t sample = kUntouched;
        ASSERT_EQ(lrasynth_tap_read(&profile, 0, intensity, static_cast<int64_t>(i), &sample, 1), 1);
        ASSERT_EQ(sample, whole[i]) << i << " at " << intensity << " %";
      }
    }
  }
}

// Passes that overlap repeat the stride up to the end of the last one; an event that reaches beyond stays there.
TEST(Windows, OfOverlappingPassesEndWithWhatHangsOver) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  const Integers records =
      request_of({curve(3, 200, {0, 9, 9, 200}, {9, 90, 60, 90}), curve(2, 28, {0, 9, 9, 28}, {9, 90, 60, 90})});
  const auto read = [&](int32_t loops, int32_t gap_ms) {
    const lrasynth_pattern whole = {records.data(), 34, loops, gap_ms, LRASYNTH_NO_LIMIT};
    Bytes out(static_cast<std::size_t>(lrasynth_pattern_length(&profile, &whole)));
    EXPECT_EQ(lrasynth_pattern_read(&profile, &whole, 0, out.data(), std::ssize(out)), std::ssize(out));
    return out;
  };
  const Bytes once = read(1, 0), looped = read(4, -1);
  const std::size_t stride = 24 * 29, end = 24 * 30 + 3 * stride;
  ASSERT_EQ(once.size(), 24U * 203);
  ASSERT_EQ(looped.size(), once.size());
  for (std::size_t i = 0; i < looped.size(); ++i) ASSERT_EQ(looped[i], once[i < end ? i % stride : i]) << i;
}

// A tap that runs past the pass ends with the vibration that hangs over it, in the gap as well.
TEST(Windows, CutTapsWhereTheFurthestVibrationEnds) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  const Integers records = request_of({curve(0, 50, {0, 9, 9, 50}, {9, 90, 60, 90}), transient(45, 80, 50),
                                       curve(0, 20, {0, 9, 9, 20}, {9, 90, 60, 90})});
  const lrasynth_pattern twice = pattern_of(records, 2, 100);
  Bytes out(24 * 140, kUntouched);
  ASSERT_EQ(lrasynth_pattern_read(&profile, &twice, 0, out.data(), std::ssize(out)), std::ssize(out));
  EXPECT_EQ(slice(out, 24 * 45, 24 * 5), slice(tap(50, 64), 0, 24 * 5));
  EXPECT_THAT(slice(out, 24 * 50, 24 * 70), Each(0));
}

TEST(Windows, ReachBeyond32Bits) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  const Integers records = request_of({curve(0, 36000000, {0, 9, 10, 36000000}, {90, 90, 90, 90})});
  const lrasynth_pattern alarm = pattern_of(records, kMax, 7);
  const int64_t pass = int64_t{36000000} * 24, stride = pass + int64_t{7} * 24;
  EXPECT_EQ(lrasynth_pattern_length(&profile, &alarm), pass + (int64_t{kMax} - 1) * stride);
  EXPECT_EQ(getLongSignalBufferLength(kMax, 7, records.data(), 17), 0);
  Bytes first(500), last(500);
  EXPECT_EQ(lrasynth_pattern_read(&profile, &alarm, 0, first.data(), 500), 500);
  EXPECT_EQ(lrasynth_pattern_read(&profile, &alarm, (int64_t{kMax} - 1) * stride - 168, last.data(), 500), 500);
  EXPECT_THAT(slice(last, 0, 168), Each(0));
  EXPECT_EQ(slice(last, 168, 332), slice(first, 0, 332));
  const Integers late = request_of({transient(200000, 80, 50)}),
                 later = request_of({curve(90000, 9, {0, 3, 6, 9}, {9, 9, 9, 9})});
  for (const Integers& beyond : {late, later}) {
    const lrasynth_pattern unlimited = pattern_of(beyond, 1, 0, 200000);
    EXPECT_GT(lrasynth_pattern_length(&profile, &unlimited), 89478 * 24) << "the limit does not wrap";
  }
}

TEST(Windows, RefuseWithACause) {
  const Integers fine = request_of({curve(10, 9, {0, 3, 6, 9}, {9, 9, 9, 9})});
  const Integers early = request_of({transient(-1, 80, 50), curve(10, 9, {0, 3, 6, 9}, {9, 9, 9, 9})});
  const struct {
    lrasynth_pattern pattern;
    int64_t error;
  } rows[] = {{pattern_of(fine, 2, -20), LRASYNTH_ERROR_EARLY_COPY},
              {pattern_of(early), LRASYNTH_ERROR_EARLY_EVENT},
              {pattern_of(fine, 1, 0, 9), LRASYNTH_ERROR_LATE_EVENT},
              {{nullptr, 17, 1, 0, -1}, LRASYNTH_ERROR_NULL_POINTER}};
  const lrasynth_profile profile = lrasynth_profile_of(1, LRASYNTH_MOTOR_1040, 1);
  uint8_t byte = kUntouched;
  for (const auto& row : rows) {
    EXPECT_EQ(lrasynth_pattern_length(&profile, &row.pattern), row.error);
    EXPECT_EQ(lrasynth_pattern_read(&profile, &row.pattern, 0, &byte, 1), row.error);
  }
  const lrasynth_pattern good = pattern_of(fine, 1, 0, 10);
  EXPECT_EQ(lrasynth_pattern_length(&profile, &good), 12 * 19);
  EXPECT_EQ(lrasynth_pattern_read(&profile, &good, 12 * 19, nullptr, 1), 0);
  EXPECT_THAT((std::vector{lrasynth_pattern_length(nullptr, &good), lrasynth_pattern_length(&profile, nullptr),
                           lrasynth_pattern_read(&profile, &good, 0, nullptr, 1), lrasynth_tap_length(nullptr, 50),
                           lrasynth_tap_read(nullptr, 50, 80, 0, &byte, 1),
                           lrasynth_tap_read(&profile, 50, 80, 0, nullptr, 1)}),
              Each(LRASYNTH_ERROR_NULL_POINTER));
  EXPECT_THAT(
      (std::vector{
          lrasynth_pattern_read(&profile, &good, -1, &byte, 1), lrasynth_pattern_read(&profile, &good, 0, &byte, -1),
          lrasynth_tap_read(&profile, 50, 80, -1, &byte, 1), lrasynth_tap_read(&profile, 50, 80, 0, &byte, -1)}),
      Each(LRASYNTH_ERROR_NEGATIVE_WINDOW));
  const lrasynth_profile streaming = lrasynth_profile_of(LRASYNTH_CHIP_EVENT_STREAM, LRASYNTH_MOTOR_1040, 1);
  const lrasynth_pattern late = pattern_of(fine, 1, 0, 9);
  EXPECT_EQ(lrasynth_pattern_length(&streaming, &late), 8) << "a stream has no limit";
  const lrasynth_profile silent = lrasynth_profile_of(0, LRASYNTH_MOTOR_81540, 1);
  const lrasynth_profile stored = lrasynth_profile_of(0, LRASYNTH_MOTOR_832, 1);
  EXPECT_EQ(lrasynth_tap_length(&silent, 50), LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS);
  EXPECT_EQ(lrasynth_tap_read(&stored, 101, 80, 0, &byte, 1), LRASYNTH_ERROR_LEVEL_WITHOUT_TAP);
  EXPECT_EQ(byte, kUntouched);
}

// Each row bends a sound request of a tap and a vibration in one or two integers.
TEST(Check, FindsTheFirstFault) {
  const struct {
    int32_t error, index;
    std::vector<std::pair<std::size_t, int32_t>> bends;
    std::size_t length = 51;
  } rows[] = {{0, 0, {}},
              {0, 0, {{2, 126}, {23, 100}}},
              {LRASYNTH_ERROR_NO_RECORD, 17, {{17, 4095}}},
              {LRASYNTH_ERROR_READS_AS_RECORD, 9, {{9, 4096}}},
              {LRASYNTH_ERROR_INCOMPLETE_RECORD, 34, {}, 50},
              {LRASYNTH_ERROR_LENGTH, 34, {{34, 0}}, 50},
              {LRASYNTH_ERROR_NEGATIVE_TIME, 1, {{1, -1}}},
              {LRASYNTH_ERROR_NEGATIVE_TIME, 21, {{21, -1}}},
              {LRASYNTH_ERROR_HUGE_TIME, 18, {{18, 89478480}}},
              {LRASYNTH_ERROR_LATE_EVENT, 18, {{18, 1001}}},
              {LRASYNTH_ERROR_FULL_SCALE, 2, {{2, 127}}},
              {LRASYNTH_ERROR_FULL_SCALE, 2, {{2, -127}}},
              {LRASYNTH_ERROR_FULL_SCALE, 26, {{26, 397}}},
              {LRASYNTH_ERROR_POINTS_BACKWARDS, 28, {{28, 9}}},
              {LRASYNTH_ERROR_POINTS_SPAN, 31, {{31, 41}}},
              {LRASYNTH_ERROR_POINTS_SPAN, 31, {{22, 1}}},
              {LRASYNTH_ERROR_LAST_RECORD, 17, {{35, 20}}}};
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  for (const auto& row : rows) {
    Integers request =
        request_of({transient(5, 100, 50), curve(10, 40, {0, 10, 20, 40}, {10, 100, 396, 0}), transient(60, 80, 20)});
    for (const auto& [index, value] : row.bends) request[index] = value;
    request.resize(row.length);
    request.shrink_to_fit();
    const lrasynth_pattern bent = pattern_of(request, 1, 0, 1000);
    int32_t index = -1;
    EXPECT_EQ(lrasynth_pattern_check(&profile, &bent, &index), row.error);
    EXPECT_EQ(index, row.index) << lrasynth_error_text(row.error);
    EXPECT_EQ(lrasynth_pattern_check(&profile, &bent, nullptr), row.error);
  }
  const auto check = [](const lrasynth_profile& p, const Integers& records, int32_t loops = 1, int32_t gap_ms = 0) {
    const lrasynth_pattern whole = pattern_of(records, loops, gap_ms, 50);
    int32_t index = -1;
    const int32_t error = lrasynth_pattern_check(&p, &whole, &index);
    return std::pair(error, index);
  };
  // What taps the motor has.
  const Integers at_120 = request_of({transient(5, 80, 120)});
  EXPECT_EQ(check(lrasynth_profile_of(0, LRASYNTH_MOTOR_832, 1), at_120),
            std::pair(LRASYNTH_ERROR_LEVEL_WITHOUT_TAP, 3));
  EXPECT_EQ(check(lrasynth_profile_of(0, 7, 1), at_120), std::pair(LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, 0));
  EXPECT_EQ(check({0, 999, LRASYNTH_MOTOR_1040, 1}, at_120), std::pair(LRASYNTH_ERROR_SAMPLE_RATE, 0));
  EXPECT_EQ(check(profile, at_120, 2, 89478486), std::pair(LRASYNTH_ERROR_HUGE_TIME, 17));
  // An event stream knows neither limit nor interval, but an order and 16 bits.
  const lrasynth_profile streaming = lrasynth_profile_of(LRASYNTH_CHIP_EVENT_STREAM, LRASYNTH_MOTOR_1040, 1);
  const auto listed_at = [](int32_t first_ms, int32_t second_ms, int32_t duration_ms) {
    return request_of(
        {transient(first_ms, 80, 50), curve(second_ms, duration_ms, {0, 1, 2, duration_ms}, Integers(4))});
  };
  const std::pair<Integers, std::pair<int32_t, int32_t>> streams[] = {
      {listed_at(60, 30060, 2700), {0, 0}},
      {listed_at(60, 30060, 2703), {LRASYNTH_ERROR_STREAM_TIME, 34}},
      {listed_at(60, 59, 9), {LRASYNTH_ERROR_STREAM_ORDER, 18}},
      {listed_at(65536, 65536, 9), {LRASYNTH_ERROR_STREAM_TIME, 1}},
      {listed_at(0, 0, 65536), {LRASYNTH_ERROR_STREAM_TIME, 21}}};
  for (const auto& [records, fault] : streams) EXPECT_EQ(check(streaming, records, 2, -30000), fault);
  EXPECT_EQ(check({LRASYNTH_CHIP_EVENT_STREAM, 0, LRASYNTH_MOTOR_1040, 1}, streams[0].first).first, 0);
  const Integers first_ends_last = request_of({curve(0, 90, {0, 3, 6, 90}, {9, 9, 9, 9}), transient(20, 80, 50)});
  const lrasynth_pattern listed = pattern_of(first_ends_last);
  EXPECT_EQ(lrasynth_pattern_check(&profile, &listed, nullptr), LRASYNTH_ERROR_LAST_RECORD);
  EXPECT_EQ(lrasynth_pattern_check(&streaming, &listed, nullptr), 0);
  const Integers fine = request_of({curve(10, 9, {0, 3, 6, 9}, {9, 9, 9, 9})});
  const lrasynth_pattern overlapping = pattern_of(fine, 2, -20);
  int32_t index = -1;
  EXPECT_EQ(lrasynth_pattern_check(&profile, &overlapping, &index), LRASYNTH_ERROR_EARLY_COPY);
  EXPECT_EQ(index, 17);
  EXPECT_EQ(lrasynth_pattern_check(nullptr, &overlapping, &index), LRASYNTH_ERROR_NULL_POINTER);
  EXPECT_EQ(lrasynth_pattern_check(&profile, nullptr, &index), LRASYNTH_ERROR_NULL_POINTER);
  const lrasynth_pattern empty = {nullptr, 0, 1, 0, -1};
  EXPECT_EQ(lrasynth_pattern_check(&profile, &empty, &index), 0);
  const lrasynth_profile slow_stream = {LRASYNTH_CHIP_EVENT_STREAM, 999, LRASYNTH_MOTOR_1040, 1};
  EXPECT_EQ(lrasynth_pattern_check(&slow_stream, &overlapping, &index), 0) << "a stream has no samples";
  const lrasynth_pattern nothing = {nullptr, 17, 1, 0, -1};
  EXPECT_EQ(lrasynth_pattern_check(&profile, &nothing, &index), LRASYNTH_ERROR_NULL_POINTER);
}

TEST(Builders, FillEveryIntegerOfARecord) {
  Integers record(17, kMax);
  lrasynth_put_transient(record.data(), 5, 80, 60);
  EXPECT_EQ(record, request_of({transient(5, 80, 60)}));
  const lrasynth_point points[] = {{0, 1, 2}, {3, 4, 5}, {6, 7, 8}, {9, 10, 11}};
  lrasynth_put_continuous(record.data(), 7, 9, points);
  EXPECT_THAT(record, ElementsAre(4096, 7, 0, 0, 9, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
}

TEST(Versions, AndTextsOfErrors) {
  EXPECT_EQ(lrasynth_version(), LRASYNTH_VERSION);
  EXPECT_STREQ(lrasynth_error_text(0), "no error");
  EXPECT_STREQ(lrasynth_error_text(-1000), "unknown error");
  EXPECT_STREQ(lrasynth_error_text(LRASYNTH_ERROR_LATE_EVENT), "a continuous vibration starts later than the limit");
}

// Eight motors on eight threads, each with its own profile and pattern.
TEST(Windows, OfDifferentProfilesRunSideBySide) {
  Digest random;
  std::vector<std::thread> threads;
  for (const int32_t motor : {1040, 832, 9595, 81540}) {
    for (const int32_t chip : {0, 1}) {
      const ScopedProfile set(motor, chip, 0);
      const Integers records = calls::make_pattern(random);
      const Bytes expected = documented(pattern_of(records, 2, 3));
      threads.emplace_back([records, expected, profile = lrasynth_profile_of(chip, motor, 0)] {
        const lrasynth_pattern p = pattern_of(records, 2, 3);
        Bytes read(expected.size());
        for (int repeat = 0; repeat < 50; ++repeat) {
          read.assign(read.size(), kUntouched);
          ASSERT_EQ(lrasynth_pattern_read(&profile, &p, 0, read.data(), std::ssize(read)), std::ssize(read));
          ASSERT_TRUE(read == expected) << profile.motor_type;
        }
      });
    }
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
