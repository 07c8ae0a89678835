// The device profile and the sample codes.
#include "support.h"

// Runs first in its process: nothing has been set yet.
TEST(Profile, HoldsItsLoadTimeValues) {
  EXPECT_THAT((Integers{IC_TYPE, SAMPLE_RATE, getMotorType(), getBoostFlg(), F0}), ElementsAre(0, 24000, 1040, 1, 170));
}

TEST(Profile, ChipTypeFixesTheSampleRate) {
  const ScopedProfile restored(1040);
  const int32_t rows[][2] = {{1, 12000}, {0, 24000}, {2, 24000}, {11, 24000}, {-1, 24000}};
  for (const auto& [chip, rate] : rows) {
    setChipType(chip);
    EXPECT_EQ(IC_TYPE, chip);
    EXPECT_EQ(SAMPLE_RATE, rate) << chip;
  }
}

TEST(Profile, ResonantFrequencyFollowsTheMotorAndReplacesWhatWasSet) {
  const ScopedProfile restored(1040);
  const int32_t rows[][2] = {{832, 235}, {81540, 130}, {1040, 170}, {9595, 170}, {1234, 170}};
  for (const auto& [motor, hz] : rows) {
    EXPECT_EQ(setMotorType(motor), 0);
    EXPECT_EQ(getMotorType(), motor);
    setF0(300);
    EXPECT_EQ(F0, 300);
    EXPECT_EQ(getF0(), hz) << motor;
    EXPECT_EQ(F0, hz) << motor;
  }
}

TEST(Profile, BoostFlagIsStoredInverted) {
  const ScopedProfile restored(1040);
  const int32_t rows[][2] = {{1, 0}, {5, -4}, {INT32_MIN, -INT32_MAX}, {0, 1}};
  for (const auto& [flag, stored] : rows) {
    EXPECT_EQ(setBoostFlg(flag), 0);
    EXPECT_EQ(getBoostFlg(), stored);
  }
}

TEST(SampleCodes, CodeAndMirrorOffsetValues) {
  const float rows[][2] = {{128, 255}, {128.5F, 1.5F}, {129, 2}, {255, 128}, {127.5F, 254.5F}, {28, 155}, {1, 128}};
  for (const auto& [offset_value, code] : rows) {
    EXPECT_EQ(wave_transform(offset_value), code);
    EXPECT_EQ(wave_reverse(offset_value), 256 - offset_value);
  }
  const int32_t whole_rows[][2] = {{128, 255}, {129, 2}, {0, 127}, {256, 129}, {1, 128}, {255, 128}};
  for (const auto& [whole, code] : whole_rows) EXPECT_EQ(custom_wave_transform(whole), static_cast<float>(code));
}
