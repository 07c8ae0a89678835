// Estimated rendering against the definition of every sample, on the library's inner parts.
#include "tone/speculation.h"

#include <cmath>

#include "curves/frequency.h"
#include "curves/intensity.h"
#include "digest_families.h"
#include "pattern/curve_segment.h"
#include "support.h"
#include "transient/replay.h"

namespace lrasynth {
namespace {

// Renders the segment both ways and returns how many samples the estimate left in doubt.
int32_t compare(const CurveSegment& segment, int32_t first, int32_t count) {
  int32_t doubtful = 0;
  std::vector<uint8_t> rendered(static_cast<std::size_t>(count));
  render<PlainCoding>(segment, Window<uint8_t>{first, first + count, rendered.data()});
  for (int32_t i = 0; i < count; ++i) {
    const float exact = segment.exact(first + i);
    EXPECT_EQ(rendered[static_cast<std::size_t>(i)], low_byte(PlainCoding::code(exact))) << first + i;
    float estimate = 0;
    segment.estimate(first + i, 1, &estimate);
    EXPECT_LE(std::fabs(estimate - exact), segment.error(first + i)) << first + i;
    doubtful += std::fabs(estimate - std::round(estimate)) < margin<PlainCoding>(segment, first + i) ? 1 : 0;
  }
  return doubtful;
}

CurvePoint random_point(const Profile& profile, grid::Random& random) {
  const Motor& motor = profile.motor;
  const int32_t offset = random.between(-50, 50);
  const auto intensity = static_cast<float>(random.between(0, 100));
  return {.at = 0,
          .frequency_hz = offset_hz(motor.offsets_at(profile.boost_flag), motor.base_hz, offset),
          .amplitude = gain_at(motor.gain_at(profile.boost_flag), offset) * 128.0F * intensity / 100.0F};
}

TEST(FastSine, KeepsItsBoundOverTheWholeRange) {
  double worst = 0;
  const auto check = [&](float x) {
    worst = std::max(worst, std::fabs(static_cast<double>(fast_sine(x)) - std::sin(static_cast<double>(x))));
  };
  for (float x = 1e-6F; x < kFastSineLimit; x = x * 1.00003F + 1e-7F) {
    check(x);
    check(-x);
  }
  for (int k = 1; k < 60000; ++k) check(static_cast<float>(k * 3.14159265358979));  // where reductions go wrong
  EXPECT_LE(worst, static_cast<double>(kFastSineError));
  EXPECT_GE(worst, 1e-8);
}

TEST(Speculation, GivesTheDefinedBytesOfOrdinaryEvents) {
  grid::Random random;
  int64_t samples = 0, doubtful = 0;
  for (const int32_t motor : {1040, 832, 9595, 81540}) {
    for (const int32_t chip : {0, 1}) {
      const Profile profile = {chip, {chip == 1 ? 12000 : 24000}, motor_of(motor), random.between(0, 1)};
      for (int event = 0; event < 60; ++event) {
        const int32_t count = profile.rate.samples(random.between(5, 400));
        const CurvePoint from = random_point(profile, random), to = random_point(profile, random);
        doubtful += compare(CurveSegment(profile.rate, from, to, count), 0, count);
        samples += count;
      }
    }
  }
  EXPECT_GT(samples, 1000000);
  EXPECT_LT(doubtful, samples / 500);
}

TEST(Speculation, GivesTheDefinedBytesOfHardEvents) {
  const struct {
    const char* what;
    CurvePoint from, to;
    int32_t count, first;
    int32_t rate = 24000;
  } rows[] = {{"next to nothing", {0, 170, 1e-3F}, {0, 170, 0.7F}, 4000, 0},
              {"whole amplitudes", {0, 100, 127.0F}, {0, 100, 127.0F}, 24000, 0},
              {"beyond full scale", {0, 170, 90.0F}, {0, 200, 180.0F}, 2000, 0},
              {"huge", {0, 170, 3e9F}, {0, 170, -2e9F}, 2000, 0},
              {"a minute's end", {0, 300, 30.0F}, {0, 350, 122.0F}, 1440000, 1436000},
              {"three minutes' end, beyond the proven range", {0, 300, 30.0F}, {0, 350, 122.0F}, 4320000, 4319000},
              {"a rate below zero", {0, 170, 120.0F}, {0, 170, -100.0F}, 2000, 0, -24000},
              {"a low rate, where the ramp turns on", {0, 170, 10.0F}, {0, 170, 110.0F}, 2000, 0, 1000},
              {"through rest", {0, 170, -100.0F}, {0, 170, 100.0F}, 3000, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    compare(CurveSegment({row.rate}, row.from, row.to, row.count), row.first, std::min(4000, row.count - row.first));
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

TEST(Truncation, SaturatesAndTakesNanForZero) {
  EXPECT_THAT(Integers({truncate(std::nan("")), truncate(-1.9F), truncate(-2147483648.9), truncate(-HUGE_VALF),
                        truncate(2147483647.9), truncate(HUGE_VALF)}),
              ElementsAre(0, -1, INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX));
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
