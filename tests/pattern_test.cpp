// Long signals: lengths, continuous vibration, layout of events and repetitions, and the compact event stream.
#include "support.h"

namespace {

// A steady event at the base frequency: 32 sample units on motor 1040 at 100 %.
Integers steady(int32_t start_ms, int32_t duration_ms, int32_t intensity = 100) {
  return curve(start_ms, duration_ms, {0, 0, duration_ms, duration_ms}, Integers(4, intensity));
}

int32_t length_of(const Integers& request, int32_t loop_count = 1, int32_t interval_ms = 0) {
  return getLongSignalDataLength(loop_count, interval_ms, request.data(), static_cast<int32_t>(request.size()));
}

// 385 samples are 16 whole ms.
TEST(Lengths, OnePassEndsWithTheLastRecord) {
  const int32_t rows[][5] = {{1040, 0, 1000, 50, 24 * 1016}, {1040, 0, 1000, 80, 24 * 1017},
                             {1040, 1, 1000, 50, 12 * 1016}, {832, 0, 10, 50, 24 * 18},
                             {9595, 1, 10, 50, 12 * 78},     {81540, 0, 1000, 50, 24000}};
  for (const auto& [motor, chip, start_ms, level, length] : rows) {
    const ScopedProfile profile(motor, chip);
    const Integers request = request_of({steady(0, 20), transient(start_ms, 80, level)});
    EXPECT_EQ(length_of(request), length) << motor << " " << level;
    EXPECT_EQ(length_of(request, 4, 200), length) << motor << " " << level;
  }
  EXPECT_EQ(length_of(request_of({steady(0, 20), {4095, 1, 2}})), 0);
  EXPECT_EQ(length_of(steady(100, 500)), 14400);
  const ScopedProfile half_rate(1040, 1);
  EXPECT_EQ(length_of(steady(100, 500)), 7200);
}

TEST(Lengths, BufferHoldsTheFurthestEventAndTheLastCopy) {
  const Integers overhanging = request_of({steady(0, 300), transient(100, 80, 50)});
  EXPECT_EQ(length_of(overhanging), 24 * 116);
  EXPECT_EQ(pattern(overhanging).bytes.size(), 24U * 300);
  EXPECT_EQ(pattern(overhanging, 2, 10).bytes.size(), 24U * 300);
  EXPECT_EQ(pattern(overhanging, 3, 50).bytes.size(), 24U * (3 * 116 + 2 * 50));
  EXPECT_EQ(pattern(steady(0, 100), 3, 50).bytes.size(), 24U * 400);
}

TEST(Continuous, SteadyEventRestartsItsPhaseAtEachPoint) {
  const Bytes out = pattern(curve(0, 10, {0, 2, 8, 10}, {100, 100, 100, 100})).bytes;
  ASSERT_EQ(out.size(), 240U);
  EXPECT_THAT(slice(out, 0, 12), ElementsAre(0, 2, 3, 5, 6, 8, 9, 10, 12, 13, 14, 16));
  EXPECT_THAT(slice(out, 46, 4), ElementsAre(29, 28, 255, 2));
  EXPECT_THAT(slice(out, 236, 4), ElementsAre(30, 30, 29, 28));
}

TEST(Continuous, FadesAndEmptySegments) {
  const Bytes joined = pattern(curve(0, 10, {0, 5, 5, 10}, {100, 100, 100, 100})).bytes;
  EXPECT_THAT(slice(joined, 118, 6), ElementsAre(227, 228, 255, 2, 3, 5));
  const Bytes silent = pattern(steady(0, 10, 0)).bytes;
  EXPECT_EQ(silent[0], 0);
  EXPECT_THAT(slice(silent, 1, 239), Each(255));
  const ScopedProfile half_rate(1040, 1);
  const Bytes fade = pattern(curve(0, 10, {0, 5, 6, 10}, {0, 100, 100, 0})).bytes;
  EXPECT_THAT(slice(fade, 0, 8), ElementsAre(0, 1, 1, 2, 3, 4, 6, 7));
}

// Bytes that change when a compiler fuses multiplications and additions.
TEST(Continuous, IsNotFused) {
  EXPECT_EQ(pattern({4096, 0, 0, 0, 35, 0, 20, 30, 7, 10, -40, 19, 70, 30, 35, 20, -50}).bytes[685], 249);
  const Bytes two = pattern({4096, 0, 0, 0, 111, 0, 40, 0, 35, 30, 0, 107, 100, -40, 111, 60, -10}).bytes;
  EXPECT_THAT((Bytes{two[1741], two[2280]}), ElementsAre(47, 1));
  // This one changes when envelope and carrier are multiplied in single precision.
  EXPECT_EQ(pattern({4096, 0, 0, 0, 71, 0, 62, 4, 71, 73, 9, 71, 73, 9, 71, 73, 9}).bytes[1575], 24);
}

// Point amplitudes show in the first half-waves: amplitude + 1 at the crest.
TEST(Continuous, AmplitudeFollowsGainAndMotor) {
  const int32_t rows[][5] = {{832, 0, 50, 123, 235}, {832, 1, 50, 112, 235}, {9595, 1, -50, 113, 170},
                             {1040, 1, 20, 45, 170}, {81540, 1, 0, 32, 130}, {5, 1, 50, 112, 170}};
  for (const auto& [motor, boost_flag, offset, crest, f0] : rows) {
    const ScopedProfile profile(motor, 0, boost_flag);
    Integers event = steady(0, 20);
    for (const std::size_t point : {7, 10, 13, 16}) event[point] = offset;
    const Bytes out = pattern(event).bytes;
    const auto negative = std::find_if(out.begin(), out.end(), [](uint8_t code) { return code > 128; });
    EXPECT_EQ(*std::max_element(out.begin(), negative), crest) << motor << " " << offset;
    EXPECT_EQ(F0, f0);
  }
}

TEST(Continuous, LimitComparesTheStartInSamples) {
  const Integers event = steady(100, 5);
  Bytes out(120, kUntouched);
  setF0(1);
  EXPECT_EQ(get_4096_wave(event.data(), out.data(), 2399), -1);
  EXPECT_THAT(out, Each(kUntouched));
  EXPECT_EQ(F0, 170);
  EXPECT_EQ(get_4096_wave(event.data(), out.data(), 2400), 0);
  EXPECT_EQ(out[1], 2);
}

// The second segment, of 25 ms, begins 5 ms before the event.
TEST(Continuous, SegmentThatBeginsBeforeTheEvent) {
  const Bytes cut = pattern(curve(0, 20, {0, -5, 20, 20}, {100, 100, 100, 100})).bytes;
  EXPECT_EQ(slice(cut, 1, 479), slice(pattern(steady(0, 25)).bytes, 121, 479));
}

TEST(Renderer, LaterEventsReplaceEarlierOnes) {
  const Bytes out =
      pattern(request_of({transient(5, 100, 50), steady(0, 40), steady(20, 10, 50), transient(30, 100, 80)})).bytes;
  ASSERT_EQ(out.size(), 24U * 47);
  EXPECT_EQ(slice(out, 0, 120), slice(pattern(steady(0, 40)).bytes, 0, 120));
  EXPECT_EQ(slice(out, 120, 385), tap(50, 80));  // attenuated in its level band
  EXPECT_EQ(slice(out, 505, 215), slice(pattern(steady(0, 10, 50)).bytes, 25, 215));
  EXPECT_EQ(slice(out, 720, 24 * 17), slice(tap(80, 100), 0, 24 * 17));  // cut at the end of the pass
}

TEST(Renderer, RepeatsThePassAndLeavesTheGaps) {
  const Bytes once = pattern(steady(0, 100)).bytes;
  const Rendered thrice = pattern(steady(0, 100), 3, 50);
  EXPECT_EQ(thrice.status, 0);
  ASSERT_EQ(thrice.bytes.size(), 9600U);
  for (const std::size_t copy : {0, 3600, 7200}) EXPECT_EQ(slice(thrice.bytes, copy, 2400), once);
  for (const std::size_t gap : {2400, 6000}) EXPECT_THAT(slice(thrice.bytes, gap, 1200), Each(kUntouched));
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
  EXPECT_THAT(slice(late.bytes, 120, late.bytes.size() - 120), Each(kUntouched));
  EXPECT_EQ(pattern(request, 2, 0, 100).status, 0);
  EXPECT_EQ(pattern(request, 2, 0, 89479).status, -1) << "the limit wraps";
}

TEST(Renderer, TransientAtAnOffset) {
  const int32_t rows[][4] = {
      {1040, 50, 100, 80}, {1040, 65, 90, 63}, {1040, 120, 90, 90}, {1040, -3, 100, 10}, {832, 5, 90, 90}};
  for (const auto& [motor, level, intensity, scaled] : rows) {
    const ScopedProfile profile(motor);
    const Bytes expected = tap(level, scaled);
    Bytes out(240 + expected.size(), kUntouched);
    EXPECT_EQ(get_4097_wave(10, intensity, level, out.data()), 0);
    EXPECT_THAT(slice(out, 0, 240), Each(kUntouched));
    EXPECT_EQ(slice(out, 240, expected.size()), expected) << motor << " " << level;
  }
  const ScopedProfile profile(81540);
  EXPECT_EQ(get_4097_wave(10, 100, 50, Bytes(1).data()), 0);
}

TEST(EventStream, DescribesTheEvents) {
  const ScopedProfile profile(1040, LRASYNTH_CHIP_EVENT_STREAM);
  const Integers request = request_of({curve(0, 300, {0, 0, 300, 300}, {100, 80, 100, 100}), transient(500, 60, 50)});
  const Bytes groups = {0, 0, 0, 80, 44, 1, 0, 244, 1, 60, 5, 0};
  const struct {
    int32_t loop_count, copies;
    Bytes total;
  } rows[] = {{1, 1, {37, 3}}, {2, 2, {74, 6}}, {3, 3, {111, 9}}, {0, 1, {0, 0}}, {-5, 1, {71, 240}}};
  for (const auto& row : rows) {
    Bytes expected = row.total;
    for (int copy = 0; copy < row.copies; ++copy) expected.insert(expected.end(), groups.begin(), groups.end());
    const Rendered out = pattern(request, row.loop_count);
    EXPECT_EQ(out.status, 0);
    EXPECT_EQ(out.bytes, expected) << row.loop_count;
    EXPECT_EQ(length_of(request, row.loop_count), static_cast<int32_t>(expected.size()));
  }
  EXPECT_THAT(pattern(Integers(17)).bytes, ElementsAre(0, 0));
}

TEST(EventStream, TimesEventsFromTheRecordBeforeAndReadsZerosOutsideTheArray) {
  const ScopedProfile profile(1040, LRASYNTH_CHIP_EVENT_STREAM);
  const struct {
    Integers request;
    Bytes stream;
  } rows[] = {
      {{4096}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {{4097, 7, 80}, {12, 0, 0, 7, 0, 80, 5, 0}},
      // The second event's predecessor would lie before the array.
      {{4096, 1, 4097, 9, 33}, {48, 0, 0, 1, 0, 0, 33, 0, 0, 9, 0, 33, 5, 0}},
      // No event lies where the first one's predecessor would.
      {{0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4097, 300, 60}, {49, 1, 0, 44, 1, 60, 5, 0}},
      {request_of({transient(300, 60, 50), transient(250, 60, 50)}),
       {4, 1, 0, 44, 1, 60, 5, 0, 0, 206, 255, 60, 5, 0}}};
  for (const auto& row : rows) EXPECT_EQ(pattern(row.request).bytes, row.stream);
}

}  // namespace
