// Tones and the ramp. The figures marked "fused" change when a compiler fuses multiplications and additions.
#include "support.h"

namespace {

Bytes tone(int32_t half_periods, int32_t hz, int32_t amplitude) {
  return filled<uint8_t>(get_sine_wave_len(hz, static_cast<float>(half_periods) * 0.5F),
                         [=](uint8_t* out) { return sine(half_periods, hz, amplitude, out); });
}

std::vector<float> offset_tone(int32_t hz, int32_t strength, float cycles) {
  return filled<float>(get_sine_wave_len(hz, cycles), [=](float* out) { return get_sine(hz, strength, out, cycles); });
}

std::vector<float> ramp(int32_t count, float start, float end) {
  return filled<float>(count, [=](float* out) { return getIncreasingStepIntensity(count, out, start, end); });
}

TEST(Sine, FullPeriodAt24000) {
  const Bytes out = tone(2, 100, 100);
  ASSERT_EQ(out.size(), 240U);
  EXPECT_THAT(slice(out, 0, 8), ElementsAre(0, 3, 6, 8, 11, 14, 16, 19));
  EXPECT_EQ(out[60], 101);
  EXPECT_THAT(slice(out, 175, 10), Each(155));
  EXPECT_THAT(slice(out, 235, 5), ElementsAre(241, 244, 247, 249, 252));
}

TEST(Sine, HalfPeriodsRatesAndAmplitudes) {
  const Bytes half = tone(1, 170, 100);
  EXPECT_EQ(half.size(), 70U);
  EXPECT_THAT(slice(half, 0, 5), ElementsAre(0, 5, 9, 14, 18));
  EXPECT_EQ(tone(2, 100, 127)[60], 128);
  EXPECT_EQ(tone(1, 80, 44)[125], 23);  // 22 fused
  EXPECT_TRUE(tone(0, 100, 100).empty());
  const ScopedProfile half_rate(1040, 1);
  EXPECT_EQ(tone(2, 100, 100).size(), 120U);
}

TEST(GetSine, WritesOffsetValuesClippedFromAbove) {
  const std::vector<float> full = offset_tone(170, 50, 1.0F);
  ASSERT_EQ(full.size(), 141U);
  EXPECT_EQ(full[0], 128.0F);
  EXPECT_NEAR(*std::min_element(full.begin(), full.end()), 1.008, 0.001);
  EXPECT_NEAR(*std::max_element(full.begin(), full.end()), 254.99, 0.005);
  const std::vector<float> clipped = offset_tone(100, 100, 0.5F);
  ASSERT_EQ(clipped.size(), 120U);
  EXPECT_EQ(*std::max_element(clipped.begin(), clipped.end()), 382.0F);
}

TEST(Ramp, RunsAlongAQuarterSineAt24000AndAHalfSineAt12000) {
  EXPECT_THAT(ramp(4, 0.25F, 0.875F), ElementsAre(0.25F, 0.48917717F, 0.69194174F, 0.8274247F));
  EXPECT_THAT(ramp(3, 1.0F, 0.5F), ElementsAre(1.0F, 0.75F, 0.5669873F));
  EXPECT_EQ(ramp(240, 0, 1)[120], 0.70710677F);
  EXPECT_EQ(ramp(240, 0, 1)[239], 0.9999786F);
  EXPECT_EQ(ramp(240, 0.25F, 0.875F)[23], 0.3437292F);  // 0.34372923 fused
  const ScopedProfile half_rate(1040, 1);
  EXPECT_EQ(ramp(240, 0, 1)[120], 1.0F);
  EXPECT_EQ(ramp(240, 0, 1)[239], 0.013089434F);
}

}  // namespace
