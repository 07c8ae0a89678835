// The device profile and the sample codes.
#include <gtest/gtest.h>

#include "lrasynth.h"

namespace {

// Runs first in its process: nothing has been set yet.
TEST(Profile, HoldsItsLoadTimeValues) {
  EXPECT_EQ(IC_TYPE, 0);
  EXPECT_EQ(SAMPLE_RATE, 24000);
  EXPECT_EQ(getMotorType(), 1040);
  EXPECT_EQ(getBoostFlg(), 1);
  EXPECT_EQ(F0, 170);
}

TEST(Profile, ChipTypeFixesTheSampleRate) {
  const struct {
    int32_t chip;
    int32_t rate;
  } rows[] = {{1, 12000}, {0, 24000}, {2, 24000}, {11, 24000}, {-1, 24000}};
  for (const auto& row : rows) {
    setChipType(row.chip);
    EXPECT_EQ(IC_TYPE, row.chip);
    EXPECT_EQ(SAMPLE_RATE, row.rate) << row.chip;
  }
  setChipType(0);
}

TEST(Profile, ResonantFrequencyFollowsTheMotorAndReplacesWhatWasSet) {
  const struct {
    int32_t motor;
    int32_t hz;
  } rows[] = {{832, 235}, {81540, 130}, {1040, 170}, {9595, 170}, {1234, 170}};
  for (const auto& row : rows) {
    EXPECT_EQ(setMotorType(row.motor), 0);
    EXPECT_EQ(getMotorType(), row.motor);
    setF0(300);
    EXPECT_EQ(F0, 300);
    EXPECT_EQ(getF0(), row.hz) << row.motor;
    EXPECT_EQ(F0, row.hz) << row.motor;
  }
  setMotorType(1040);
}

TEST(Profile, BoostFlagIsStoredInverted) {
  const struct {
    int32_t flag;
    int32_t stored;
  } rows[] = {{1, 0}, {5, -4}, {INT32_MIN, -INT32_MAX}, {0, 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(setBoostFlg(row.flag), 0);
    EXPECT_EQ(getBoostFlg(), row.stored);
  }
}

TEST(SampleCodes, CodeAndMirrorOffsetValues) {
  const struct {
    float offset_value;
    float code;
  } rows[] = {{128, 255}, {128.5F, 1.5F}, {129, 2}, {255, 128}, {127.5F, 254.5F}, {28, 155}, {1, 128}};
  for (const auto& row : rows) {
    EXPECT_EQ(wave_transform(row.offset_value), row.code);
    EXPECT_EQ(wave_reverse(row.offset_value), 256 - row.offset_value);
  }
}

TEST(SampleCodes, CodeTruncatedOffsetValues) {
  const struct {
    int32_t offset_value;
    float code;
  } rows[] = {{128, 255}, {129, 2}, {0, 127}, {256, 129}, {1, 128}, {255, 128}};
  for (const auto& row : rows) EXPECT_EQ(custom_wave_transform(row.offset_value), row.code);
}

}  // namespace
