// SPDX-License-Identifier: Apache-2.0
// Long signals: how events, copies and gaps are laid out, also those of odd requests.
#include "digest.h"
#include "support.h"

namespace {

constexpr int32_t kMin = INT32_MIN, kMax = INT32_MAX;
constexpr std::size_t kPerMs = 24;

// The second segment, of 25 ms, begins 5 ms before the event.
TEST(Continuous, SegmentThatBeginsBeforeTheEvent) {
  const Bytes cut = render({curve(0, 20, {0, -5, 20, 20}, Integers(4, 100))}).bytes;
  EXPECT_EQ(slice(cut, 1, 479), slice(render({steady(0, 25)}).bytes, 121, 479));
}

TEST(Continuous, CurvesAreDrawnWhereTheyFallInsideTheEvent) {
  const struct {
    Integers times;
    std::size_t end_ms;  // of what is drawn; rest beyond
  } rows[] = {{{0, 10, 20, 30}, 30}, {{0, 10, 20, 90}, 50}, {{60, 70, 80, 90}, 30},   {{0, 0, -9, -9}, 0},
              {{0, 30, 20, 40}, 40}, {{0, -9, -9, 20}, 20}, {{0, kMax, kMin, -1}, 0}, {{0, -1, -40, -20}, 0}};
  for (const auto& row : rows) {
    const Bytes out = render({curve(0, 50, row.times, Integers(4, 80))}).bytes;
    ASSERT_EQ(out.size(), 50 * kPerMs);
    const std::size_t end = std::max<std::size_t>(1, row.end_ms * kPerMs);
    EXPECT_EQ(out[0], 0);
    EXPECT_THAT(slice(out, end, out.size() - end), Each(255));
    EXPECT_TRUE(row.end_ms == 0 || slice(out, end - 48, 48) != Bytes(48, 255));
  }
}

// Copies are of the pass as it stands in the buffer, with what the host left where no event stands.
TEST(Renderer, CopiesWhatStandsInThePass) {
  const Integers request = request_of({transient(30, 80, 50), transient(0, 80, 20), transient(60, 80, 50)});
  const auto length = static_cast<int32_t>(request.size());
  Bytes out(static_cast<std::size_t>(getLongSignalBufferLength(3, 5, request.data(), length)));
  for (std::size_t i = 0; i < out.size(); ++i) out[i] = static_cast<uint8_t>(i % 251);
  ASSERT_EQ(getLongSignalData(3, 5, request.data(), out.data(), length, LRASYNTH_NO_LIMIT_MS), 0);
  const std::size_t pass = 24 * 76, stride = pass + 24 * 5;
  ASSERT_EQ(out.size(), 2 * stride + pass);
  EXPECT_EQ(out[24 * 29], 24 * 29 % 251);
  for (std::size_t i = stride; i < out.size(); ++i) {
    ASSERT_EQ(out[i], i % stride < pass ? out[i - stride] : i % 251) << i;
  }
}

TEST(Renderer, LaterEventsReplaceEarlierOnes) {
  const Bytes out = render({transient(5, 100, 50), steady(0, 40), steady(20, 10, 50), transient(30, 100, 80)}).bytes;
  ASSERT_EQ(out.size(), kPerMs * 47);
  EXPECT_EQ(slice(out, 0, 120), slice(render({steady(0, 40)}).bytes, 0, 120));
  EXPECT_EQ(slice(out, 120, 385), tap(50, 80));  // attenuated in its level band
  EXPECT_EQ(slice(out, 505, 215), slice(render({steady(0, 10, 50)}).bytes, 25, 215));
  EXPECT_EQ(slice(out, 720, kPerMs * 17), slice(tap(80, 100), 0, kPerMs * 17));  // cut at the end of the pass
}

TEST(Renderer, FirstLateEventEndsTheCall) {
  const std::vector<Integers> records = {steady(0, 5), steady(90, 5), transient(10, 100, 50), steady(100, 5)};
  const Rendered late = render(records, 2, 0, 50);
  EXPECT_EQ(late.status, -1);
  EXPECT_EQ(slice(late.bytes, 0, 120), render({steady(0, 5)}).bytes);
  EXPECT_THAT(slice(late.bytes, 120, late.bytes.size() - 120), Each(kUntouched));
  EXPECT_EQ(render(records, 2, 0, 100).status, 0);
  EXPECT_EQ(render(records, 2, 0, 89479).status, -1) << "the limit wraps";
}

TEST(Renderer, VibrationsPublishTheResonantFrequencyLateOrNot) {
  const struct {
    Integers record;
    int32_t limit_ms, f0;
  } rows[] = {{steady(10, 5), 10, 235}, {steady(10, 5), 9, 235}, {transient(10, 80, 50), 9, 1}};
  const ScopedProfile profile(832);
  for (const auto& row : rows) {
    setF0(1);
    render({row.record}, 1, 0, row.limit_ms);
    EXPECT_EQ(F0, row.f0);
  }
  setF0(1);
  EXPECT_EQ(get_4096_wave(steady(10, 5).data(), Bytes(120).data(), 239), -1);
  EXPECT_EQ(F0, 235);
}

// An integer before the records moves all of them from where they should begin.
TEST(OddRequests, HaveTheirRecordsWhereverTheyStand) {
  Digest random;
  for (const int32_t chip : {0, 11}) {
    const ScopedProfile profile(1040, chip);
    for (int i = 0; i < 20; ++i) {
      const Integers records = calls::make_pattern(random);
      const Bytes expected = render({records}, 2, 7).bytes;
      EXPECT_TRUE(render({{5}, records}, 2, 7).bytes == expected);
    }
  }
}

TEST(OddRequests, OfANegativeLengthAreEmpty) {
  for (const int32_t chip : {0, 11}) {
    const ScopedProfile profile(1040, chip);
    for (const int32_t length : {-1, kMin}) {
      Bytes bytes(2, kUntouched);
      EXPECT_EQ(getLongSignalBufferLength(3, 5, &length, length), chip == 11 ? 2 : 0);
      EXPECT_EQ(getLongSignalData(3, 5, &length, bytes.data(), length, 1000), 0);
      EXPECT_THAT(bytes, Each(chip == 11 ? 0 : kUntouched));
    }
  }
}

TEST(OddRequests, NullPointersAreRefusedWhereSomethingWouldBeRead) {
  uint8_t byte = kUntouched;
  int32_t integer = 0;
  for (const auto& [chip, length] : {std::pair{0, 17}, {11, 17}, {11, 1}}) {
    const ScopedProfile profile(1040, chip);
    EXPECT_EQ(getLongSignalDataLength(1, 0, nullptr, length), 0);
    EXPECT_EQ(getLongSignalBufferLength(1, 0, nullptr, length), 0);
    EXPECT_EQ(getLongSignalData(1, 0, nullptr, &byte, length, 1000), -1);
  }
  EXPECT_EQ(get_4096_wave(nullptr, &byte, 0), -1);
  EXPECT_EQ(transStringDataToInt(nullptr, 1, &integer), -1);
  EXPECT_EQ(transStringDataToInt(nullptr, -1, nullptr), 0);
  EXPECT_EQ(byte, kUntouched);
}

}  // namespace
