// SPDX-License-Identifier: Apache-2.0
// Estimated rendering against the definition of every sample, on the library's inner parts.
#include "tone/speculation.h"

#include <cmath>

#include "digest.h"
#include "pattern/curve_segment.h"
#include "support.h"
#include "tone/sine.h"
#include "transient/replay.h"
#include "transient/tap.h"

namespace lrasynth {
namespace {

// Renders samples both ways, checks that estimates stay within their bounds, and returns how many are left in doubt.
template <class Coding = PlainCoding>
int32_t compare(const SampleSource auto& source, int32_t first, int32_t count) {
  int32_t doubtful = 0;
  std::vector<uint8_t> rendered(static_cast<std::size_t>(count));
  render<Coding>(source, Window<uint8_t>{first, first + count, rendered.data()});
  for (int32_t i = 0; i < count; ++i) {
    const float exact = source.exact(first + i), error = source.error(first + i);
    EXPECT_EQ(rendered[static_cast<std::size_t>(i)], low_byte(Coding::code(exact))) << first + i;
    float estimate = 0;
    source.estimate(first + i, 1, &estimate);
    EXPECT_TRUE(error == kUnproven || std::fabs(estimate - exact) <= error) << first + i;
    EXPECT_TRUE(error == kUnproven || std::fabs(exact - kRest) <= 127.0F) << first + i;
    doubtful += std::fabs(estimate - std::round(estimate)) < margin<Coding>(source, first + i) ? 1 : 0;
  }
  return doubtful;
}

TEST(FastSine, KeepsItsBoundOverTheWholeRange) {
  double worst = 0;  // error by its bound
  const auto check = [&](float x) {
    const float bound = kFastSineError + std::fabs(x) * kReductionError;
    const double error = std::fabs(static_cast<double>(fast_sine(x)) - std::sin(static_cast<double>(x)));
    worst = std::max(worst, error / static_cast<double>(bound));
  };
  for (float x = 1e-6F; x < kFastSineLimit; x = x * 1.00003F + 1e-7F) {
    check(x);
    check(-x);
  }
  for (int k = 1; k < 60000; ++k) check(static_cast<float>(k * 3.14159265358979));  // where reductions go wrong
  EXPECT_LE(worst, 1);
  EXPECT_GE(worst, 0.8);
}

TEST(Speculation, GivesTheDefinedBytesOfOrdinaryEvents) {
  Digest random;
  int64_t samples = 0, doubtful = 0;
  const auto point = [&]() -> CurvePoint {
    return {.at = 0,
            .frequency_hz = random.between(80, 350),
            .amplitude = static_cast<float>(random.between(0, 12200)) / 100};
  };
  for (int event = 0; event < 480; ++event) {
    const Rate rate{event % 2 == 0 ? 24000 : 12000};
    const int32_t count = rate.samples(random.between(5, 400));
    const CurvePoint from = point(), to = point();
    doubtful += compare(CurveSegment(rate, from, to, count), 0, count);
    samples += count;
  }
  EXPECT_GT(samples, 1000000);
  EXPECT_LT(doubtful, samples / 500);
}

TEST(Speculation, GivesTheDefinedBytesOfHardEvents) {
  const struct {
    const char* what;
    CurvePoint from, to;
    int32_t count, first;
    bool proven;
    int32_t rate = 24000;
  } rows[] = {{"next to nothing", {0, 170, 1e-3F}, {0, 170, 0.7F}, 4000, 0, true},
              {"whole amplitudes", {0, 100, 127.0F}, {0, 100, 127.0F}, 24000, 0, true},
              {"a fall", {0, 170, 127.0F}, {0, 170, 60.0F}, 2000, 0, true},
              {"beyond full scale", {0, 170, 90.0F}, {0, 200, 180.0F}, 2000, 0, false},
              {"beyond full scale, below rest", {0, 170, 90.0F}, {0, 200, -180.0F}, 2000, 0, false},
              {"huge", {0, 170, 3e9F}, {0, 170, -2e9F}, 2000, 0, false},
              {"a minute's end", {0, 300, 30.0F}, {0, 350, 122.0F}, 1440000, 1436000, true},
              {"three minutes' end", {0, 300, 30.0F}, {0, 350, 122.0F}, 4320000, 4319000, false},
              {"a hundred seconds' end", {0, 300, 30.0F}, {0, 350, 122.0F}, 2344000, 2343000, false},
              {"three minutes' end, falling", {0, 350, 122.0F}, {0, 300, 30.0F}, 4320000, 4319000, false},
              {"a rate below zero", {0, 170, 120.0F}, {0, 170, -100.0F}, 2000, 0, false, -24000},
              {"a rate below zero, where the ramp rises", {0, 170, 100.0F}, {0, 170, 60.0F}, 2000, 0, false, -24000},
              {"three minutes' end below zero", {0, 350, 60.0F}, {0, 350, 60.0F}, 4320000, 4319000, false, -24000},
              {"a low rate, where the ramp turns on", {0, 170, 10.0F}, {0, 170, 50.0F}, 2000, 0, true, 1000},
              {"a low rate, where the ramp goes on", {0, 170, 100.0F}, {0, 170, 60.0F}, 2000, 0, false, 1000},
              {"a low rate below zero", {0, 170, 20.0F}, {0, 170, 60.0F}, 2000, 0, true, -1000},
              {"through rest", {0, 170, -100.0F}, {0, 170, 100.0F}, 3000, 0, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const CurveSegment segment({row.rate}, row.from, row.to, row.count);
    const int32_t count = std::min(4000, row.count - row.first);
    compare(segment, row.first, count);
    EXPECT_EQ(segment.error(row.first + count - 1) != kUnproven, row.proven);
  }
}

// The phase of 30000 Hz leaves the proven range within the 40000 cycles.
TEST(Speculation, GivesTheDefinedBytesOfTonesAndSegments) {
  for (const int32_t amplitude : {-127, -1, 1, 3, 44, 100, 127, 128}) {
    for (const auto& [hz, cycles] : {std::pair{170, 20.0F}, {80, 1.5F}, {30000, 40000.0F}}) {
      SCOPED_TRACE(testing::Message() << amplitude << " at " << hz << " Hz");
      const Tone tone({24000}, hz, cycles, amplitude);
      EXPECT_EQ(tone.error(tone.count() - 1) != kUnproven, hz < 30000 && amplitude < 128);
      compare(tone, 0, tone.count());
      for (const bool mirrored : {false, true}) {
        const SineSegment segment({24000}, hz, cycles, amplitude, mirrored);
        EXPECT_EQ(segment.error(segment.count() - 1) != kUnproven, hz < 30000 && std::abs(amplitude) < 50);
        compare(segment, 0, segment.count());
      }
    }
  }
}

TEST(Speculation, DoubtsWhatIsNotANumber) {
  for (const float doubtful : {std::nanf(""), 130.0005F, 129.9995F}) {
    const float estimates[] = {130.5F, doubtful, 127.5F};
    int32_t codes[3];
    EXPECT_TRUE(code_estimates(estimates, 3, 128, 0.001F, codes)) << doubtful;
    EXPECT_EQ(codes[0], 3);
    EXPECT_EQ(codes[2], 254);
    EXPECT_FALSE(code_estimates(estimates, 1, 128, 0.001F, codes));
  }
}

// Only a value right beside a whole number could be moved across it.
TEST(Narrowing, IsTruncationBelowItsLimit) {
  for (float whole = 1; whole < kNarrowLimit; whole += whole < 4096 ? 1.0F : 61.0F) {
    float value = whole;
    for (int step = 0; step < 4; ++step) value = std::nextafter(value, 0.0F);
    for (int step = 0; step < 8; ++step, value = std::nextafter(value, kNarrowLimit)) {
      ASSERT_EQ(narrow(value), static_cast<int32_t>(value)) << value;
      ASSERT_EQ(narrow(-value), static_cast<int32_t>(-value)) << value;
    }
  }
  EXPECT_NE(narrow(3355445.0F), 3355445);
}

// Windows pass over taps by this bound, whatever the level.
TEST(Taps, NoneOutlastsTheLongest) {
  for (const int32_t motor : {832, 1040, 9595, 81540}) {
    for (const int32_t rate : {INT32_MIN, 0, 1, 30, 999, 7919, 12000, 24000, 192000, INT32_MAX}) {
      const Profile profile = profile_of({0, rate, motor, 1});
      for (int32_t level = -60; level <= 160; ++level) {
        ASSERT_LE(tap_of(profile, level, 0).length(), longest_tap(profile)) << motor << " at " << rate << ": " << level;
      }
    }
  }
}

TEST(Scaling, NominalIntensitiesNeedSinglePrecisionOnly) {
  for (int32_t intensity = 0; intensity <= 100; ++intensity) {
    const Scaling scaling(intensity);
    for (int code = 0; code < 256; ++code) {
      const auto byte = static_cast<uint8_t>(code);
      ASSERT_EQ(scaling.nominal(byte), scaling.exact(byte)) << intensity << " % of " << code;
    }
  }
}

}  // namespace
}  // namespace lrasynth
