// SPDX-License-Identifier: Apache-2.0
// The device profile.
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
