// Estimated rendering against the definition of every sample, on the library's inner parts.
#include "tone/speculation.h"

#include <cmath>

#include "curves/intensity.h"
#include "digest_families.h"
#include "pattern/curve_segment.h"
#include "support.h"
#include "transient/scaling.h"

namespace lrasynth {
namespace {

// Renders the segment both ways and returns how many samples the estimate left in doubt.
int32_t compare(const CurveSegment& segment, int32_t first, int32_t count) {
  int32_t doubtful = 0;
  PlainCoding coding;
  std::vector<uint8_t> rendered(static_cast<std::size_t>(count));
  render(segment, coding, first, count, rendered.data());
  for (int32_t i = 0; i < count; ++i) {
    const float exact = segment.exact(first + i);
    EXPECT_EQ(rendered[static_cast<std::size_t>(i)], low_byte(PlainCoding::code(exact))) << first + i;
    float estimates[kStep];
    segment.estimate(first + i, 1, estimates);
    EXPECT_LE(std::fabs(estimates[0] - exact), segment.error(first + i)) << first + i;
    doubtful += in_doubt(estimates[0], margin<PlainCoding>(segment, first + i)) ? 1 : 0;
  }
  return doubtful;
}

CurvePoint random_point(grid::Random& random) {
  const int32_t offset = random.between(-50, 50);
  const auto intensity = static_cast<float>(random.between(0, 100));
  return {offset_frequency_hz(base_frequency_hz(), offset), offset_gain(offset) * 128.0F * intensity / 100.0F};
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
      const ScopedProfile profile(motor, chip, random.between(0, 1));
      for (int event = 0; event < 60; ++event) {
        const int32_t count = samples_per_ms() * random.between(5, 400);
        doubtful += compare(CurveSegment{random_point(random), random_point(random), count}, 0, count);
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
  } rows[] = {{"next to nothing", {170, 1e-3F}, {170, 0.7F}, 4000, 0},
              {"whole amplitudes", {100, 127.0F}, {100, 127.0F}, 24000, 0},
              {"beyond full scale", {170, 90.0F}, {200, 180.0F}, 2000, 0},
              {"huge", {170, 3e9F}, {170, -2e9F}, 2000, 0},
              {"a minute's end", {300, 30.0F}, {350, 122.0F}, 1440000, 1436000},
              {"three minutes' end, beyond the proven range", {300, 30.0F}, {350, 122.0F}, 4320000, 4319000},
              {"a rate below zero", {170, 120.0F}, {170, -100.0F}, 2000, 0, -24000},
              {"a low rate, where the ramp turns on", {170, 10.0F}, {170, 110.0F}, 2000, 0, 1000},
              {"through rest", {170, -100.0F}, {170, 100.0F}, 3000, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const ScopedProfile profile(1040);
    SAMPLE_RATE = row.rate;
    compare(CurveSegment(row.from, row.to, row.count), row.first, std::min(4000, row.count - row.first));
  }
}

TEST(Speculation, DoubtsWhatIsNotANumber) {
  EXPECT_TRUE(in_doubt(std::nanf(""), 0.001F));
  EXPECT_TRUE(in_doubt(130.0005F, 0.001F));
  EXPECT_FALSE(in_doubt(130.5F, 0.001F));
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
