// Long signals: lengths, continuous vibration, layout of events and repetitions, and the compact event stream.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support.h"

namespace {

using testing::Each;
using testing::ElementsAre;

constexpr int32_t kEventStreamChip = 11;

// A steady event at the base frequency: 32 sample units on motor 1040 at 100 %.
Integers steady(int32_t start_ms, int32_t duration_ms, int32_t intensity = 100) {
  const int32_t d = duration_ms;
  return {4096, start_ms, 0, 0, d, 0, intensity, 0, 0, intensity, 0, d, intensity, 0, d, intensity, 0};
}

Integers transient(int32_t start_ms, int32_t intensity, int32_t level) { return {4097, start_ms, intensity, level}; }

int32_t length_of(const Integers& request, int32_t loop_count = 1, int32_t interval_ms = 0) {
  return getLongSignalDataLength(loop_count, interval_ms, request.data(), static_cast<int32_t>(request.size()));
}

int32_t buffer_length_of(const Integers& request, int32_t loop_count = 1, int32_t interval_ms = 0) {
  return getLongSignalBufferLength(loop_count, interval_ms, request.data(), static_cast<int32_t>(request.size()));
}

TEST(Lengths, OnePassEndsWithTheLastRecord) {
  const struct {
    int32_t motor, chip;
    Integers last;
    int32_t length;
  } rows[] = {{1040, 0, steady(100, 500), 14400},
              {1040, 1, steady(100, 500), 7200},
              {1040, 0, transient(1000, 80, 50), 24 * 1016},  // 385 samples are 16 whole ms
              {1040, 0, transient(1000, 80, 80), 24 * 1017},
              {832, 0, transient(10, 80, 50), 24 * 18},
              {9595, 1, transient(10, 80, 50), 12 * 78},
              {81540, 0, transient(1000, 80, 50), 24000},
              {1040, 0, {4095, 1, 2}, 0}};
  for (const auto& row : rows) {
    const ScopedProfile profile(row.motor, row.chip);
    const Integers request = request_of({steady(0, 20), row.last});
    EXPECT_EQ(length_of(request), row.length);
    EXPECT_EQ(length_of(request, 4, 200), row.length);
  }
}

TEST(Lengths, BufferHoldsTheFurthestEventAndTheLastCopy) {
  const Integers overhanging = request_of({steady(0, 300), transient(100, 80, 50)});
  EXPECT_EQ(length_of(overhanging), 24 * 116);
  EXPECT_EQ(buffer_length_of(overhanging), 24 * 300);
  EXPECT_EQ(buffer_length_of(overhanging, 2, 10), 24 * 300);
  EXPECT_EQ(buffer_length_of(overhanging, 3, 50), 24 * (3 * 116 + 2 * 50));
  EXPECT_EQ(buffer_length_of(request_of({steady(0, 100)}), 3, 50), 24 * 400);
  EXPECT_EQ(buffer_length_of(request_of({steady(-10, 300), steady(0, 100)})), 24 * 100);
}

TEST(Continuous, SteadyEventRestartsItsPhaseAtEachPoint) {
  const Integers event = {4096, 0, 0, 0, 10, 0, 100, 0, 2, 100, 0, 8, 100, 0, 10, 100, 0};
  const Bytes out = pattern(event).bytes;
  ASSERT_EQ(out.size(), 240U);
  EXPECT_THAT(slice(out, 0, 12), ElementsAre(0, 2, 3, 5, 6, 8, 9, 10, 12, 13, 14, 16));
  EXPECT_THAT(slice(out, 46, 4), ElementsAre(29, 28, 255, 2));
  EXPECT_THAT(slice(out, 236, 4), ElementsAre(30, 30, 29, 28));
}

TEST(Continuous, FadesAndEmptySegments) {
  const Bytes joined = pattern({4096, 0, 0, 0, 10, 0, 100, 0, 5, 100, 0, 5, 100, 0, 10, 100, 0}).bytes;
  EXPECT_THAT(slice(joined, 118, 6), ElementsAre(227, 228, 255, 2, 3, 5));
  const Bytes silent = pattern(steady(0, 10, 0)).bytes;
  EXPECT_EQ(silent[0], 0);
  EXPECT_THAT(slice(silent, 1, 239), Each(255));
  const ScopedProfile half_rate(1040, 1);
  const Bytes fade = pattern({4096, 0, 0, 0, 10, 0, 0, 0, 5, 100, 0, 6, 100, 0, 10, 0, 0}).bytes;
  EXPECT_THAT(slice(fade, 0, 8), ElementsAre(0, 1, 1, 2, 3, 4, 6, 7));
}

// Bytes that change when a compiler fuses multiplications and additions.
TEST(Continuous, IsNotFused) {
  const Bytes a = pattern({4096, 0, 0, 0, 35, 0, 20, 30, 7, 10, -40, 19, 70, 30, 35, 20, -50}).bytes;
  EXPECT_EQ(a[685], 249);
  const Bytes b = pattern({4096, 0, 0, 0, 111, 0, 40, 0, 35, 30, 0, 107, 100, -40, 111, 60, -10}).bytes;
  EXPECT_EQ(b[1741], 47);
  EXPECT_EQ(b[2280], 1);
  // This one changes when envelope and carrier are multiplied in single precision.
  const Bytes c = pattern({4096, 0, 0, 0, 71, 0, 62, 4, 71, 73, 9, 71, 73, 9, 71, 73, 9}).bytes;
  EXPECT_EQ(c[1575], 24);
}

// Point amplitudes show in the first half-waves: amplitude + 1 at the crest.
TEST(Continuous, AmplitudeFollowsGainAndMotor) {
  const struct {
    int32_t motor, boost_flag, offset, crest, f0;
  } rows[] = {{832, 0, 50, 123, 235}, {832, 1, 50, 112, 235}, {9595, 1, -50, 113, 170},
              {1040, 1, 20, 45, 170}, {81540, 1, 0, 32, 130}, {5, 1, 50, 112, 170}};
  for (const auto& row : rows) {
    const ScopedProfile profile(row.motor, 0, row.boost_flag);
    Integers event = steady(0, 20);
    for (const std::size_t point : {7, 10, 13, 16}) event[point] = row.offset;
    const Bytes out = pattern(event).bytes;
    const auto negative = std::find_if(out.begin(), out.end(), [](uint8_t code) { return code > 128; });
    EXPECT_EQ(*std::max_element(out.begin(), negative), row.crest) << row.motor << " " << row.offset;
    EXPECT_EQ(F0, row.f0);
  }
}

TEST(Continuous, LimitComparesTheStartInSamples) {
  const Integers event = steady(100, 5);
  Bytes out(120, 77);
  setF0(1);
  EXPECT_EQ(get_4096_wave(event.data(), out.data(), 2399), -1);
  EXPECT_THAT(out, Each(77));
  EXPECT_EQ(F0, 170);
  EXPECT_EQ(get_4096_wave(event.data(), out.data(), 2400), 0);
  EXPECT_EQ(out[1], 2);
}

// The second segment, of 25 ms, begins 5 ms before the event.
TEST(Continuous, SegmentThatBeginsBeforeTheEvent) {
  Integers event = steady(0, 20);
  event[8] = -5;
  EXPECT_EQ(slice(pattern(event).bytes, 1, 479), slice(pattern(steady(0, 25)).bytes, 121, 479));
}

TEST(Renderer, LaterEventsReplaceEarlierOnes) {
  const Integers request =
      request_of({transient(5, 100, 50), steady(0, 40), steady(20, 10, 50), transient(30, 100, 80)});
  const Bytes out = pattern(request).bytes;
  ASSERT_EQ(out.size(), 24U * 47);
  const Bytes outer = pattern(steady(0, 40)).bytes;
  const Bytes inner = pattern(steady(0, 10, 50)).bytes;
  EXPECT_EQ(slice(out, 0, 120), slice(outer, 0, 120));
  EXPECT_EQ(slice(out, 120, 385), tap(50, 80));  // attenuated in its level band
  EXPECT_EQ(slice(out, 505, 215), slice(inner, 25, 215));
  EXPECT_EQ(slice(out, 720, 24 * 17), slice(tap(80, 100), 0, 24 * 17));  // cut at the end of the pass
}

TEST(Renderer, RepeatsThePassAndLeavesTheGaps) {
  const Bytes once = pattern(steady(0, 100)).bytes;
  const Rendered thrice = pattern(steady(0, 100), 3, 50);
  EXPECT_EQ(thrice.status, 0);
  ASSERT_EQ(thrice.bytes.size(), 9600U);
  for (const std::size_t copy : {0, 3600, 7200}) EXPECT_EQ(slice(thrice.bytes, copy, 2400), once);
  for (const std::size_t gap : {2400, 6000}) EXPECT_THAT(slice(thrice.bytes, gap, 1200), Each(77));
}

// Copied byte by byte in ascending order, overlapping copies repeat the first stride.
TEST(Renderer, NegativeIntervalOverlapsTheCopies) {
  const Bytes once = pattern(steady(0, 100)).bytes;
  const Bytes overlapping = pattern(steady(0, 100), 3, -60).bytes;
  ASSERT_EQ(overlapping.size(), 24U * 180);
  for (std::size_t i = 0; i < overlapping.size(); ++i) ASSERT_EQ(overlapping[i], once[i % 960]) << i;
  EXPECT_EQ(pattern(steady(0, 100), 3, -100).bytes, once);
  EXPECT_EQ(pattern(steady(0, 100), 3, -101).status, -1);
}

TEST(Renderer, FirstLateEventEndsTheCall) {
  const Integers request = request_of({steady(0, 5), steady(90, 5), transient(10, 100, 50), steady(100, 5)});
  const Rendered late = pattern(request, 2, 0, 50);
  EXPECT_EQ(late.status, -1);
  EXPECT_EQ(late.bytes[1], 2);
  EXPECT_THAT(slice(late.bytes, 120, late.bytes.size() - 120), Each(77));
  EXPECT_EQ(pattern(request, 2, 0, 100).status, 0);
  EXPECT_EQ(pattern(request, 2, 0, 89479).status, -1) << "the limit wraps";
}

TEST(Renderer, TransientAtAnOffset) {
  const struct {
    int32_t motor, level, intensity, scaled;
  } rows[] = {{1040, 50, 100, 80}, {1040, 65, 90, 63}, {1040, 120, 90, 90}, {1040, -3, 100, 10}, {832, 5, 90, 90}};
  for (const auto& row : rows) {
    const ScopedProfile profile(row.motor);
    const Bytes expected = tap(row.level, row.scaled);
    Bytes out(240 + expected.size(), 77);
    EXPECT_EQ(get_4097_wave(10, row.intensity, row.level, out.data()), 0);
    EXPECT_THAT(slice(out, 0, 240), Each(77));
    EXPECT_EQ(slice(out, 240, expected.size()), expected) << row.motor << " " << row.level;
  }
  const ScopedProfile profile(81540);
  const Rendered nothing = pattern(request_of({transient(10, 100, 50)}));
  EXPECT_EQ(nothing.status, 0);
  EXPECT_THAT(nothing.bytes, Each(77));
}

TEST(EventStream, DescribesTheEvents) {
  const ScopedProfile profile(1040, kEventStreamChip);
  Integers continuous = steady(0, 300);
  continuous[9] = 80;
  const Integers request = request_of({continuous, transient(500, 60, 50)});
  const Bytes groups = {0, 0, 0, 80, 44, 1, 0, 244, 1, 60, 5, 0};
  const struct {
    int32_t loop_count;
    std::size_t copies;
    uint8_t low, high;
  } rows[] = {{1, 1, 37, 3}, {2, 2, 74, 6}, {3, 3, 111, 9}, {0, 1, 0, 0}, {-5, 1, 71, 240}};
  for (const auto& row : rows) {
    Bytes expected = {row.low, row.high};
    for (std::size_t copy = 0; copy < row.copies; ++copy) expected.insert(expected.end(), groups.begin(), groups.end());
    const Rendered out = pattern(request, row.loop_count);
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.bytes, expected) << row.loop_count;
    EXPECT_EQ(length_of(request, row.loop_count), static_cast<int32_t>(expected.size()));
  }
  EXPECT_THAT(pattern(Integers(17)).bytes, ElementsAre(0, 0));
}

TEST(EventStream, TimesEventsFromTheRecordBefore) {
  const ScopedProfile profile(1040, kEventStreamChip);
  const Bytes out = pattern(request_of({transient(300, 60, 50), transient(250, 60, 50)})).bytes;
  EXPECT_THAT(slice(out, 3, 2), ElementsAre(44, 1));
  EXPECT_THAT(slice(out, 9, 2), ElementsAre(206, 255));  // -50
  Integers request(20, 7);  // no events, though the first one's predecessor would lie there
  request.insert(request.end(), {4097, 300, 60});
  EXPECT_THAT(slice(pattern(request).bytes, 3, 2), ElementsAre(44, 1));
}

}  // namespace
