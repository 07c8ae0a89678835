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

// Each sample by itself: the first and the last of every event, over others and in the copy, are windows of their own.
TEST(Windows, OfOneSampleAreThoseOfTheWhole) {
  for (const int32_t motor : {832, 1040}) {
    const lrasynth_profile profile = lrasynth_profile_of(1, motor, 1);
    const Integers records = request_of({transient(5, 100, 50), steady(0, 40), steady(19, 11, 50),
                                         transient(33, 100, 0), steady(60, 0), steady(0, 66)});
    const lrasynth_pattern twice = pattern_of(records, 2, 3);
    Bytes whole(12 * 135);
    ASSERT_EQ(lrasynth_pattern_read(&profile, &twice, 0, whole.data(), std::ssize(whole) + 1), std::ssize(whole));
    for (std::size_t i = 0; i < whole.size(); ++i) {
      uint8_t sample = kUntouched;
      ASSERT_EQ(lrasynth_pattern_read(&profile, &twice, static_cast<int64_t>(i), &sample, 1), 1);
      ASSERT_EQ(sample, whole[i]) << i << " of motor " << motor;
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

using Fault = std::pair<int32_t, int32_t>;  // and its index

Fault check(const lrasynth_profile& profile, const lrasynth_pattern& pattern) {
  int32_t index = -1;
  const int32_t error = lrasynth_pattern_check(&profile, &pattern, &index);
  EXPECT_EQ(lrasynth_pattern_check(&profile, &pattern, nullptr), error);
  return {error, index};
}

constexpr Fault kSound = {0, 0};

// Each row bends a sound request of two taps and a vibration between them in one or two integers.
TEST(Check, FindsTheFirstFault) {
  const struct {
    Fault fault;
    std::vector<std::pair<std::size_t, int32_t>> bends;
    std::size_t length = 51;
  } rows[] = {{kSound, {}},
              {kSound, {{2, 126}, {23, 100}}},
              {{LRASYNTH_ERROR_NO_RECORD, 17}, {{17, 4095}}},
              {{LRASYNTH_ERROR_READS_AS_RECORD, 9}, {{9, 4096}}},
              {{LRASYNTH_ERROR_INCOMPLETE_RECORD, 34}, {}, 50},
              {{LRASYNTH_ERROR_LENGTH, 34}, {{34, 0}}, 50},
              {{LRASYNTH_ERROR_NEGATIVE_TIME, 1}, {{1, -1}}},
              {{LRASYNTH_ERROR_NEGATIVE_TIME, 21}, {{21, -1}}},
              {{LRASYNTH_ERROR_HUGE_TIME, 18}, {{18, 89478480}}},
              {{LRASYNTH_ERROR_LATE_EVENT, 18}, {{18, 1001}}},
              {{LRASYNTH_ERROR_FULL_SCALE, 2}, {{2, 127}}},
              {{LRASYNTH_ERROR_FULL_SCALE, 2}, {{2, -127}}},
              {{LRASYNTH_ERROR_FULL_SCALE, 26}, {{26, 397}}},
              {kSound, {{24, -50}, {33, 50}}},
              {{LRASYNTH_ERROR_OFFSET, 24}, {{24, -51}}},
              {{LRASYNTH_ERROR_OFFSET, 33}, {{33, 51}}},
              {{LRASYNTH_ERROR_POINTS_BACKWARDS, 28}, {{28, 9}, {24, 50}}},
              {kSound, {{31, 41}}},
              {{LRASYNTH_ERROR_POINTS_SPAN, 31}, {{31, 39}}},
              {{LRASYNTH_ERROR_POINTS_SPAN, 31}, {{22, 1}}},
              {kSound, {{31, 89478485}}},
              {{LRASYNTH_ERROR_HUGE_TIME, 31}, {{31, 89478486}}},
              {{LRASYNTH_ERROR_LAST_RECORD, 17}, {{35, 20}}},
              {{LRASYNTH_ERROR_LAST_RECORD, 0}, {{1, 100}, {18, 90}}}};
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  for (const auto& row : rows) {
    Integers request =
        request_of({transient(5, 100, 50), curve(10, 40, {0, 10, 20, 40}, {10, 100, 396, 0}), transient(60, 80, 20)});
    for (const auto& [index, value] : row.bends) request[index] = value;
    request.resize(row.length);
    request.shrink_to_fit();
    EXPECT_EQ(check(profile, pattern_of(request, 1, 0, 1000)), row.fault) << lrasynth_error_text(row.fault.first);
  }
}

TEST(Check, KnowsMotorsRatesLimitsAndPasses) {
  const auto at_rate = [](int32_t rate) { return lrasynth_profile{0, rate, LRASYNTH_MOTOR_1040, 1}; };
  const lrasynth_profile usual = at_rate(24000), half = at_rate(12000);
  const Integers tap = request_of({transient(5, 80, 120)});
  const Integers vibration = request_of({curve(10, 9, {0, 3, 6, 9}, {9, 9, 9, 9})}), nothing = {};
  const Integers ends_first = request_of({curve(0, 90, {0, 3, 6, 90}, {9, 9, 9, 9}), transient(20, 80, 50)});
  // The limit is in samples of the rate, a start in those of its whole kHz.
  const Integers at_501 = request_of({steady(501, 9)});
  // A vibration of 0 ms ends where it starts, and needs no room behind a pass that ends before.
  const Integers empty_behind = request_of({steady(100, 0), steady(0, 50)});
  const Integers empty_last = request_of({steady(0, 50), steady(100, 0)});
  const struct {
    lrasynth_profile profile;
    lrasynth_pattern pattern;
    Fault fault;
    int64_t length;
  } rows[] = {
      {lrasynth_profile_of(0, LRASYNTH_MOTOR_832, 1), pattern_of(tap), {LRASYNTH_ERROR_LEVEL_WITHOUT_TAP, 3}, 120},
      {lrasynth_profile_of(0, 7, 1), pattern_of(tap), {LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, 0}, 120},
      {at_rate(999), pattern_of(tap), {LRASYNTH_ERROR_SAMPLE_RATE, 0}, 0},
      {at_rate(11000), pattern_of(vibration), {LRASYNTH_ERROR_SAMPLE_RATE, 0}, 11 * 19},
      {half, pattern_of(vibration), kSound, 12 * 19},
      {at_rate(13000), pattern_of(vibration), kSound, 13 * 19},
      {at_rate(24001), pattern_of(vibration), {LRASYNTH_ERROR_SAMPLE_RATE, 0}, 24 * 19},
      {at_rate(44100), pattern_of(vibration), {LRASYNTH_ERROR_SAMPLE_RATE, 0}, 44 * 19},
      {usual, pattern_of(vibration, 1, 0, 10), kSound, 24 * 19},
      {usual, pattern_of(vibration, 1, 0, 9), {LRASYNTH_ERROR_LATE_EVENT, 1}, LRASYNTH_ERROR_LATE_EVENT},
      {at_rate(44100), pattern_of(at_501, 1, 0, 500), {LRASYNTH_ERROR_SAMPLE_RATE, 0}, 44 * 510},
      {at_rate(44100), pattern_of(at_501, 1, 0, 499), {LRASYNTH_ERROR_SAMPLE_RATE, 0}, LRASYNTH_ERROR_LATE_EVENT},
      {usual, pattern_of(ends_first), {LRASYNTH_ERROR_LAST_RECORD, 0}, 24 * 90},
      {usual, pattern_of(empty_behind), {LRASYNTH_ERROR_LAST_RECORD, 0}, 24 * 50},
      {usual, pattern_of(empty_last), kSound, 24 * 100},
      {usual, pattern_of(vibration, 2, 89478486), {LRASYNTH_ERROR_HUGE_TIME, 17}, LRASYNTH_ERROR_EARLY_COPY},
      {usual, pattern_of(vibration, 1, 89478486), kSound, 24 * 19},
      {usual, pattern_of(nothing, 2, 89478486), kSound, 0},
      {usual, pattern_of(vibration, 2, 89478485), kSound, 24 * (int64_t{2} * 19 + 89478485)},
      {usual, pattern_of(vibration, 2, -20), {LRASYNTH_ERROR_EARLY_COPY, 17}, LRASYNTH_ERROR_EARLY_COPY},
      {usual, pattern_of(vibration, 2, -19), kSound, 24 * 19},
      {usual, {nullptr, 0, 1, 0, -1}, kSound, 0},
      {usual, {nullptr, 16, 1, 0, -1}, {LRASYNTH_ERROR_LENGTH, 0}, 0},
      {usual, {nullptr, 17, 1, 0, -1}, {LRASYNTH_ERROR_NULL_POINTER, 0}, LRASYNTH_ERROR_NULL_POINTER},
      {usual, {tap.data(), -1, 1, 0, -1}, {LRASYNTH_ERROR_LENGTH, 0}, 0},
      {usual, {tap.data(), -17, 1, 0, -1}, {LRASYNTH_ERROR_LENGTH, 0}, 0},
      {usual, {tap.data(), INT32_MIN, 1, 0, -1}, {LRASYNTH_ERROR_LENGTH, 0}, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(check(row.profile, row.pattern), row.fault) << &row - rows;
    EXPECT_EQ(lrasynth_pattern_length(&row.profile, &row.pattern), row.length) << &row - rows;
  }
  int32_t index = -1;
  EXPECT_EQ(lrasynth_pattern_check(nullptr, &rows[0].pattern, &index), LRASYNTH_ERROR_NULL_POINTER);
  EXPECT_EQ(index, 0);
  index = -1;
  EXPECT_EQ(lrasynth_pattern_check(&usual, nullptr, &index), LRASYNTH_ERROR_NULL_POINTER);
  EXPECT_EQ(index, 0);
}

// An event stream knows no rate, limit, interval and offset, but an order, and 8 and 16 bits.
TEST(Check, KnowsEventStreams) {
  const lrasynth_profile streaming = {LRASYNTH_CHIP_EVENT_STREAM, 0, LRASYNTH_MOTOR_1040, 1};
  const struct {
    int32_t tap_ms, start_ms, duration_ms;
    Fault fault;
    int32_t loops = 2, tap_strength = 80, strength = 90;
  } rows[] = {{60, 30060, 2700, kSound},
              {60, 30060, 2702, kSound},
              {60, 30060, 2703, {LRASYNTH_ERROR_STREAM_TIME, 34}},
              {60, 30060, 2703, kSound, 1},
              {60, 59, 9, {LRASYNTH_ERROR_STREAM_ORDER, 18}},
              {0, 65530, 0, kSound, 1},
              {0, 65531, 0, {LRASYNTH_ERROR_STREAM_TIME, 34}, 1},
              {0, 65535, 0, {LRASYNTH_ERROR_STREAM_TIME, 34}, 1},
              {0, 65536, 0, {LRASYNTH_ERROR_STREAM_TIME, 18}, 1},
              {65535, 65535, 9, {LRASYNTH_ERROR_STREAM_TIME, 34}, 1},
              {65536, 65536, 9, {LRASYNTH_ERROR_STREAM_TIME, 1}, 1},
              {0, 0, 65535, {LRASYNTH_ERROR_STREAM_TIME, 34}, 1},
              {0, 0, 65536, {LRASYNTH_ERROR_STREAM_TIME, 21}, 1},
              {0, 9, 9, {LRASYNTH_ERROR_STREAM_LOOPS, 34}, 0},
              {0, 9, 9, {LRASYNTH_ERROR_STREAM_LOOPS, 34}, INT32_MIN},
              {0, 65535, 9, {LRASYNTH_ERROR_STREAM_TIME, 34}, -1},
              {0, 9, 9, kSound, 1, 0, 255},
              {0, 9, 9, kSound, 1, 255, 0},
              {0, 9, 9, {LRASYNTH_ERROR_STREAM_STRENGTH, 2}, 1, 256},
              {0, 9, 9, {LRASYNTH_ERROR_STREAM_STRENGTH, 2}, 1, -1},
              {0, 9, 9, {LRASYNTH_ERROR_STREAM_STRENGTH, 26}, 1, 80, 256},
              {0, 9, 9, {LRASYNTH_ERROR_STREAM_STRENGTH, 26}, 1, 80, -1}};
  for (const auto& row : rows) {
    const int32_t d = row.duration_ms;
    Integers records = request_of(
        {transient(row.tap_ms, row.tap_strength, 0), curve(row.start_ms, d, {0, 0, 0, d}, {0, row.strength, 0, 0})});
    records[24] = 70;
    EXPECT_EQ(check(streaming, pattern_of(records, row.loops, -30000, 5)), row.fault) << &row - rows;
  }
  const Integers ends_first = request_of({steady(0, 90), transient(20, 80, 50)});
  EXPECT_EQ(check(streaming, pattern_of(ends_first)), kSound);
  EXPECT_EQ(check(streaming, {nullptr, 1, 1, 0, -1}), Fault(LRASYNTH_ERROR_NULL_POINTER, 0));
  EXPECT_EQ(check(streaming, {ends_first.data(), -1, 1, 0, -1}), Fault(LRASYNTH_ERROR_LENGTH, 0));
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
  const std::pair<int64_t, const char*> rows[] = {
      {0, "no error"},
      {int64_t{1} << 40U, "no error"},
      {LRASYNTH_ERROR_NULL_POINTER, "a pointer is null"},
      {LRASYNTH_ERROR_NEGATIVE_WINDOW, "the window is negative"},
      {LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, "the motor has no taps"},
      {LRASYNTH_ERROR_LEVEL_WITHOUT_TAP, "the motor has no tap for this level"},
      {LRASYNTH_ERROR_EARLY_EVENT, "an event starts before the pattern"},
      {LRASYNTH_ERROR_LATE_EVENT, "a continuous vibration starts later than the limit"},
      {LRASYNTH_ERROR_EARLY_COPY, "the interval starts a pass before the first one"},
      {-8, "unknown error"},
      {-15, "unknown error"},
      {LRASYNTH_ERROR_LENGTH, "the number of integers is negative or no multiple of 17"},
      {LRASYNTH_ERROR_NO_RECORD, "no record begins where one should"},
      {LRASYNTH_ERROR_INCOMPLETE_RECORD, "a record does not fit into the array"},
      {LRASYNTH_ERROR_READS_AS_RECORD, "a parameter reads as the type of a record"},
      {LRASYNTH_ERROR_NEGATIVE_TIME, "a start or duration is negative"},
      {LRASYNTH_ERROR_HUGE_TIME, "an event or the interval reaches beyond 2^31 - 1 samples"},
      {LRASYNTH_ERROR_POINTS_BACKWARDS, "the points of a curve run backwards"},
      {LRASYNTH_ERROR_POINTS_SPAN, "the points of a curve do not span its duration"},
      {LRASYNTH_ERROR_FULL_SCALE, "an amplitude is beyond full scale"},
      {LRASYNTH_ERROR_LAST_RECORD, "the last record is not the event that ends last"},
      {LRASYNTH_ERROR_STREAM_ORDER, "the records of an event stream are not in the order of their starts"},
      {LRASYNTH_ERROR_STREAM_TIME, "a time does not fit the 16 bits of an event stream"},
      {LRASYNTH_ERROR_SAMPLE_RATE, "the sample rate is below 12000 or no multiple of 1000"},
      {LRASYNTH_ERROR_STREAM_STRENGTH, "a strength does not fit the 8 bits of an event stream"},
      {LRASYNTH_ERROR_OFFSET, "a frequency offset is beyond -50..50"},
      {LRASYNTH_ERROR_STREAM_LOOPS, "the loop count of an event stream is below 1"},
      {INT64_MIN, "unknown error"}};
  for (const auto& [error, text] : rows) EXPECT_STREQ(lrasynth_error_text(error), text) << error;
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

// What tools are told with the profile in hand is what the functions without it give.
TEST(Facts, AreThoseOfTheProcessWideFunctions) {
  std::vector<int32_t> motors, chips;
  for (int32_t i = 0; lrasynth_motor(i) != 0; ++i) motors.push_back(lrasynth_motor(i));
  for (int32_t i = 0; lrasynth_chip(i) >= 0; ++i) chips.push_back(lrasynth_chip(i));
  EXPECT_THAT(motors, ElementsAre(832, 1040, 9595, 81540));
  EXPECT_THAT(chips, ElementsAre(0, 1, 11));
  EXPECT_THAT((std::vector{lrasynth_motor(-1), lrasynth_motor(kMax), lrasynth_chip(-1), lrasynth_chip(kMax)}),
              ElementsAre(0, 0, -1, -1));
  motors.push_back(7);
  for (const int32_t motor : motors) {
    for (const int32_t boost : {0, 1, 2}) {
      const ScopedProfile set(motor, 1, boost);
      const lrasynth_profile profile = lrasynth_profile_of(1, motor, giBoostFlg);
      EXPECT_EQ(lrasynth_resonance_hz(&profile), getF0());
      EXPECT_EQ(lrasynth_has_boost(&profile), motor == 832);
      EXPECT_EQ(lrasynth_has_shares(&profile), motor == 1040);
      for (int32_t at = -60; at <= 110; ++at) {
        ASSERT_EQ(lrasynth_offset_hz(&profile, at), getFrequency_4096(getF0(), at)) << motor << " " << at;
        ASSERT_EQ(lrasynth_offset_gain(&profile, at), getIntensityMax(at)) << motor << " " << at;
        ASSERT_EQ(lrasynth_tap_driven(&profile, at, 90), getIntensity(at, 90)) << motor << " " << at;
      }
    }
  }
  EXPECT_THAT((std::vector{lrasynth_resonance_hz(nullptr), lrasynth_has_boost(nullptr), lrasynth_has_shares(nullptr),
                           lrasynth_offset_hz(nullptr, 9), lrasynth_tap_driven(nullptr, 9, 9)}),
              Each(0));
  EXPECT_EQ(lrasynth_offset_gain(nullptr, 9), 0.0F);
}

TEST(Facts, SegmentsAddUpToTheirTap) {
  lrasynth_segment segments[LRASYNTH_SEGMENTS];
  for (const int32_t chip : {0, 1}) {
    const ScopedProfile set(LRASYNTH_MOTOR_1040, chip);
    const lrasynth_profile profile = lrasynth_profile_of(chip, LRASYNTH_MOTOR_1040, 1);
    for (int32_t level = 0; level <= 100; ++level) {
      ASSERT_EQ(lrasynth_tap_segments(&profile, level, segments), LRASYNTH_SEGMENTS);
      const bool mid = getA1(level, 100) != 0;
      EXPECT_EQ(segments[0].frequency_hz, getFrequency(level));
      EXPECT_EQ(segments[0].length, get_sine_wave_len(getFrequency(level), mid ? 1.0F : getC0(level)));
      EXPECT_EQ(segments[2].frequency_hz, mid ? getF1(level) : 0);
      EXPECT_EQ(segments[3].frequency_hz, getA2(level, 100) != 0 ? getF2() : 0);
      int64_t sum = 0;
      for (const lrasynth_segment& segment : segments) sum += segment.length;
      EXPECT_EQ(sum, lrasynth_tap_length(&profile, level)) << level;
    }
    EXPECT_EQ(lrasynth_tap_segments(&profile, 50, nullptr), LRASYNTH_ERROR_NULL_POINTER);
  }
  const lrasynth_profile stored = lrasynth_profile_of(0, LRASYNTH_MOTOR_832, 1);
  const lrasynth_profile none = lrasynth_profile_of(0, LRASYNTH_MOTOR_81540, 1);
  EXPECT_THAT(
      (std::vector{lrasynth_tap_segments(&stored, 50, segments), lrasynth_tap_segments(&stored, 101, segments),
                   lrasynth_tap_segments(&none, 50, segments), lrasynth_tap_segments(nullptr, 50, segments)}),
      ElementsAre(0, LRASYNTH_ERROR_LEVEL_WITHOUT_TAP, LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, LRASYNTH_ERROR_NULL_POINTER));
}

TEST(Facts, WindowsOfAToneAreItsBytes) {
  for (const int32_t chip : {0, 1}) {
    const ScopedProfile set(LRASYNTH_MOTOR_832, chip);
    const lrasynth_profile profile = lrasynth_profile_of(chip, LRASYNTH_MOTOR_832, 1);
    for (const auto& [hz, half_periods, amplitude] :
         {std::array{170, 9, 127}, {1, 1, 5}, {6000, 3, 200}, {440, 0, 9}}) {
      Bytes whole(static_cast<std::size_t>(get_sine_wave_len(hz, static_cast<float>(half_periods) * 0.5F)));
      EXPECT_EQ(sine(half_periods, hz, amplitude, whole.data()), 0);
      ASSERT_EQ(lrasynth_tone_length(&profile, hz, half_periods), std::ssize(whole));
      for (const int64_t first : {0, 1, 300}) {
        Bytes part(333, kUntouched);
        const int64_t n = lrasynth_tone_read(&profile, hz, half_periods, amplitude, first, part.data(), 333);
        ASSERT_EQ(n, std::clamp<int64_t>(std::ssize(whole) - first, 0, 333));
        EXPECT_TRUE(std::equal(part.begin(), part.begin() + n, whole.begin() + (n > 0 ? first : 0)));
      }
    }
    EXPECT_THAT((std::vector{lrasynth_tone_length(nullptr, 1, 1), lrasynth_tone_read(nullptr, 1, 1, 1, 0, nullptr, 0),
                             lrasynth_tone_read(&profile, 9, 9, 9, 0, nullptr, 1)}),
                Each(LRASYNTH_ERROR_NULL_POINTER));
    EXPECT_EQ(lrasynth_tone_read(&profile, 9, 9, 9, -1, nullptr, 1), LRASYNTH_ERROR_NEGATIVE_WINDOW);
    EXPECT_EQ(lrasynth_tone_length(&profile, -9, 9), 0);
  }
}

}  // namespace
