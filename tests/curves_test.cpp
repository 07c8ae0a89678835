// Frequency and intensity curves at the edges of their bands.
#include "support.h"

TEST(FrequencyCurves, LevelsAtBandEdges) {
  const int32_t rows[][5] = {{0, 80, 80, 200, 80},     {1, 81, 81, 200, 81},     {25, 115, 115, 217, 105},
                             {39, 134, 134, 227, 119}, {40, 146, 146, 228, 120}, {49, 158, 158, 234, 129},
                             {50, 170, 170, 235, 130}, {51, 172, 173, 236, 134}, {60, 196, 200, 248, 174},
                             {70, 222, 230, 261, 218}, {71, 264, 233, 262, 222}, {80, 305, 260, 274, 262},
                             {100, 395, 320, 300, 350}};
  for (const auto& [level, on_1040, on_9595, on_832, on_81540] : rows) {
    EXPECT_THAT((Integers{getFrequency_1040_ShortData(level), getFrequency_9595_ShortData(level),
                          getFrequency_0832_ShortData(level), getFrequency_0815_ShortData(level)}),
                ElementsAre(on_1040, on_9595, on_832, on_81540))
        << level;
  }
  EXPECT_EQ(getFrequency_1040_ShortData(-20), 52);
  EXPECT_EQ(getFrequency_1040_ShortData(120), 485);
}

TEST(FrequencyCurves, ProfileChoosesAndClamps) {
  const int32_t rows[][3] = {{1040, -5, 80},  {1040, 150, 395}, {9595, 80, 260}, {832, 101, 300},
                             {81540, -1, 80}, {5, 37, 37},      {5, 250, 100},   {5, -3, 0}};
  for (const auto& [motor, level, hz] : rows) {
    const ScopedProfile profile(motor);
    EXPECT_EQ(getFrequency(level), hz) << motor << " " << level;
  }
}

TEST(FrequencyCurves, OffsetsAroundABase) {
  const int32_t rows[][5] = {
      {1040, 1, 170, -40, 106}, {1040, 1, 170, -39, 99},  {1040, 1, 170, 1, 202},   {1040, 1, 170, 50, 310},
      {1040, 1, 170, 0, 170},   {9595, 1, 170, 50, 300},  {9595, 1, 170, -50, 100}, {9595, 1, 170, 1, 202},
      {832, 1, 235, 50, 300},   {832, 0, 235, 50, 250},   {832, 1, 235, -50, 200},  {832, 0, 235, -50, 220},
      {832, 0, 235, 1, 235},    {832, -1, 235, 50, 250},  {81540, 1, 130, 50, 350}, {81540, 1, 130, -50, 80},
      {1040, 1, 170, 80, 310},  {9595, 1, 170, -99, 100}, {7, 1, 170, 80, 170}};
  for (const auto& [motor, boost_flag, base_hz, offset, hz] : rows) {
    const ScopedProfile profile(motor, 0, boost_flag);
    EXPECT_EQ(getFrequency_4096(base_hz, offset), hz) << motor << " " << offset;
  }
  // Which single precision cannot hold.
  for (const auto hertz : {getFrequency_0832, getFrequency_1040}) EXPECT_EQ(hertz(123456789, 0), 123456789);
  // The functions of one model do not clamp.
  EXPECT_THAT(Integers({getFrequency_1040(170, 60), getFrequency_9595(170, 60), getFrequency_0832(235, -60),
                        getFrequency_081540(130, 60)}),
              ElementsAre(332, 320, 193, 394));
}

TEST(FrequencyCurves, StepValueIsSinglePrecision) {
  EXPECT_EQ(getFrequencyStepValue(100, 170, 7), 10.0F);
  EXPECT_EQ(getFrequencyStepValue(200, 100, 3), -33.333332F);
  EXPECT_EQ(getFrequencyStepValue(5, 5, 3), 0.0F);
  EXPECT_EQ(getFrequencyStepValue(170, 100, 0), 0.0F);
}

TEST(IntensityCurves, LevelBandsOfMotor1040) {
  const int32_t rows[][3] = {{-5, 10, 3},  {9, 10, 3},   {10, 20, 6},   {15, 20, 6},   {16, 25, 8},  {30, 25, 8},
                             {31, 30, 9},  {35, 30, 9},  {36, 50, 16},  {40, 50, 16},  {41, 80, 26}, {60, 80, 26},
                             {61, 70, 23}, {70, 70, 23}, {71, 100, 33}, {120, 100, 33}};
  for (const auto& [level, of_100, of_33] : rows) {
    EXPECT_EQ(getIntensity_1040(level, 100), of_100) << level;
    EXPECT_EQ(getIntensity(level, 33), of_33) << level;
    EXPECT_THAT((Integers{getIntensity_0832(level, 33), getIntensity_9595(level, 33)}), ElementsAre(33, 33));
  }
  EXPECT_EQ(getIntensity_1040(65, 90), 63);  // the double product is just below
  for (const int32_t motor : {832, 9595, 81540}) {
    const ScopedProfile profile(motor);
    EXPECT_EQ(getIntensity(5, 100), 100) << motor;
  }
}

TEST(IntensityCurves, OffsetGains) {
  const struct {
    int32_t motor, boost_flag;
    float at_0, at_10, at_25, at_50;
  } rows[] = {{1040, 1, 0.25F, 0.275F, 0.40625F, 0.875F},
              {81540, 1, 0.25F, 0.275F, 0.40625F, 0.875F},
              {9595, 1, 0.16F, 0.18860412F, 0.33877575F, 0.875103F},
              {832, 1, 0.3F, 0.3229885F, 0.44367817F, 0.87471265F},
              {832, -1, 0.3F, 0.3229885F, 0.44367817F, 0.87471265F},
              {832, 0, 0.6F, 0.6142857F, 0.6892857F, 0.95714283F}};
  for (const auto& row : rows) {
    const ScopedProfile profile(row.motor, 0, row.boost_flag);
    EXPECT_THAT((std::vector{getIntensityMax(0), getIntensityMax(-10), getIntensityMax(25), getIntensityMax(80),
                             getIntensityMax(-51)}),
                ElementsAre(row.at_0, row.at_10, row.at_25, row.at_50, row.at_50))
        << row.motor;
  }
  EXPECT_THAT((std::vector{getIntensityMax_0832(10), getIntensityMax_1040(10), getIntensityMax_9595(10)}),
              ElementsAre(0.3229885F, 0.275F, 0.18860412F));
}

TEST(IntensityCurves, CycleCounts) {
  const int32_t rows[][2] = {{-1, 3}, {24, 3}, {25, 2}, {70, 2}, {71, 4}, {101, 4}};
  for (const auto& [level, cycles] : rows) EXPECT_EQ(getCycle(level), cycles) << level;
}
