// Transients of motor 1040, table replay and the choice between them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support.h"

namespace {

using testing::Each;
using testing::ElementsAre;

TEST(Timing, BandsOfLevels) {
  const struct {
    int32_t level;
    float c0;
    int32_t f1;
    float zero_ms;
    int32_t a1, a2;  // of intensity 100
  } rows[] = {{-5, 1.5F, 300, 2.5F, 0, 0},    {0, 1.5F, 200, 3.0F, 0, 0},     {1, 1.5F, 300, 2.5F, 0, 0},
              {24, 1.5F, 300, 2.5F, 0, 0},    {25, 1.0F, 300, 2.5F, 75, 0},   {35, 1.0F, 300, 2.5F, 75, 0},
              {36, 1.0F, 300, 2.7F, 100, 25}, {39, 1.0F, 300, 2.7F, 100, 25}, {40, 1.0F, 300, 3.2F, 100, 65},
              {43, 1.0F, 300, 3.2F, 100, 65}, {44, 1.0F, 300, 3.5F, 100, 65}, {46, 1.0F, 300, 3.5F, 100, 65},
              {47, 1.0F, 300, 3.5F, 100, 47}, {50, 1.0F, 300, 3.5F, 100, 47}, {51, 1.0F, 300, 3.5F, 100, 17},
              {52, 1.0F, 300, 4.0F, 100, 17}, {55, 1.0F, 300, 4.0F, 100, 17}, {56, 1.0F, 300, 4.1F, 100, 77},
              {62, 1.0F, 300, 4.1F, 100, 77}, {63, 1.0F, 300, 4.2F, 100, 17}, {70, 1.0F, 300, 4.2F, 100, 17},
              {71, 2.0F, 300, 2.5F, 0, 0},    {101, 2.0F, 300, 2.5F, 0, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(getC0(row.level), row.c0) << row.level;
    EXPECT_EQ(getF1(row.level), row.f1) << row.level;
    EXPECT_EQ(getZeroTime(row.level), row.zero_ms) << row.level;
    EXPECT_EQ(getA1(row.level, 100), row.a1) << row.level;
    EXPECT_EQ(getA2(row.level, 100), row.a2) << row.level;
  }
  EXPECT_EQ(getC1(), 1.0F);
  EXPECT_EQ(getC2(), 0.5F);
  EXPECT_EQ(getF2(), 100);
  EXPECT_EQ(getA1(30, 3), 2);
  EXPECT_EQ(getA1(30, -3), -2);
  EXPECT_EQ(getA2(56, INT32_MAX), 1664299826);  // no 32-bit product
}

TEST(Timing, LengthsAtBothRates) {
  const struct {
    int32_t level, mid, edge, mid_half_rate, edge_half_rate;
  } rows[] = {{0, 552, 762, 276, 381},  {1, 516, 704, 258, 352},  {24, 432, 578, 216, 289}, {25, 428, 468, 214, 234},
              {36, 408, 448, 204, 224}, {40, 400, 440, 200, 220}, {50, 385, 425, 192, 212}, {56, 387, 427, 193, 213},
              {63, 378, 418, 189, 209}, {70, 368, 408, 184, 204}, {71, 310, 441, 155, 220}, {100, 280, 381, 140, 190}};
  for (const auto& row : rows) {
    EXPECT_EQ(get_custom_wave_len(row.level), row.mid) << row.level;
    EXPECT_EQ(get_wav_len_high_frequency(row.level), row.edge) << row.level;
    EXPECT_EQ(get_wave_func_wave_len(row.level, getF1(row.level), 100, getZeroTime(row.level)), row.mid);
    EXPECT_EQ(get_wave_func_wave_len_custom(row.level, getF1(row.level), 100, getC0(row.level), 1.0F, 0.5F,
                                            getZeroTime(row.level)),
              row.edge);
    const ScopedProfile half_rate(1040, 1);
    EXPECT_EQ(get_custom_wave_len(row.level), row.mid_half_rate) << row.level;
    EXPECT_EQ(get_wav_len_high_frequency(row.level), row.edge_half_rate) << row.level;
  }
  EXPECT_EQ(get_sine_wave_len(170, 2.0F), 282);
  EXPECT_EQ(get_sine_wave_len(170, 1.0F), 141);
}

TEST(MidLevel, Level50) {
  const Bytes out = tap(50, 100);
  ASSERT_EQ(out.size(), 385U);
  EXPECT_THAT(slice(out, 0, 5), ElementsAre(0, 6, 12, 17, 23));
  EXPECT_THAT(slice(out, 33, 6), Each(127));
  EXPECT_THAT(slice(out, 103, 6), Each(128));
  EXPECT_THAT(slice(out, 141, 84), Each(255));
  EXPECT_THAT(slice(out, 225, 3), ElementsAre(255, 10, 20));
  EXPECT_EQ(out[245], 128);
  EXPECT_THAT(slice(out, 265, 3), ElementsAre(255, 253, 251));
  EXPECT_EQ(*std::min_element(out.begin() + 265, out.end()), 197);
  EXPECT_EQ(out[384], 253);
}

TEST(MidLevel, OtherLevelsIntensitiesAndRates) {
  const Bytes low = tap(30, 100);
  ASSERT_EQ(low.size(), 416U);
  EXPECT_THAT(slice(low, 256, 4), ElementsAre(255, 8, 15, 22));
  EXPECT_EQ(low[276], 95);
  EXPECT_THAT(slice(low, 296, 120), Each(255));
  const Bytes mirrored = tap(50, -100);
  EXPECT_THAT(slice(mirrored, 0, 5), ElementsAre(0, 249, 243, 238, 232));
  EXPECT_THAT(slice(mirrored, 225, 3), ElementsAre(255, 245, 235));
  EXPECT_THAT(slice(mirrored, 265, 4), ElementsAre(255, 2, 4, 5));
  EXPECT_EQ(mirrored[384], 2);
  const Bytes silent = tap(50, 1);
  EXPECT_EQ(silent[0], 0);
  EXPECT_THAT(slice(silent, 1, 384), Each(255));
  const ScopedProfile half_rate(1040, 1);
  const Bytes high = tap(70, 100);
  ASSERT_EQ(high.size(), 184U);
  EXPECT_THAT(slice(high, 104, 12), ElementsAre(255, 20, 40, 58, 75, 90, 103, 114, 121, 126, 128, 126));
  EXPECT_EQ(*std::min_element(high.begin() + 124, high.end()), 235);
}

TEST(EdgeLevel, HighestAndLowestLevels) {
  const Bytes high = tap(100, 100);
  ASSERT_EQ(high.size(), 381U);
  EXPECT_THAT(slice(high, 0, 16), ElementsAre(0, 14, 27, 39, 52, 64, 75, 85, 94, 103, 110, 116, 121, 124, 127, 127));
  EXPECT_THAT(slice(high, 121, 260), Each(255));
  const Bytes low = tap(0, 100);
  ASSERT_EQ(low.size(), 762U);
  EXPECT_THAT(slice(low, 0, 5), ElementsAre(0, 3, 6, 8, 11));
  EXPECT_THAT(slice(low, 446, 4), ElementsAre(11, 8, 6, 3));
  EXPECT_THAT(slice(low, 450, 312), Each(255));
  EXPECT_EQ(tap(-5, 100).size(), 710U);
  EXPECT_EQ(tap(120, 100), high);
}

// Two equal half-waves after the drive; only the reverse flag 1 turns the second upside down.
TEST(EdgeLevel, ReverseFlagMirrorsTheF2Segment) {
  for (const int32_t reverse : {0, 1, 2}) {
    Integers out(static_cast<std::size_t>(get_wave_func_wave_len_custom(50, 100, 100, 1, 0.5F, 0.5F, 0)));
    ASSERT_EQ(wave_func_custom(170, 0, 100, 20, 100, 20, reverse, out.data(), 1, 0.5F, 0.5F, 0), 0);
    ASSERT_EQ(out.size(), 381U);
    EXPECT_EQ(out[201], 52) << reverse;
    EXPECT_EQ(out[321], reverse == 1 ? 204 : 52) << reverse;
  }
}

// A code of 128 stays only where no 127 stands before it.
TEST(EdgeLevel, PeakDoesNotTipOver) {
  Integers out(240);
  ASSERT_EQ(wave_func_custom(100, 50, 100, 0, 100, 0, 0, out.data(), 1, 0, 0, 0), 0);
  EXPECT_THAT(slice(out, 54, 13), ElementsAre(126, 126, 127, 127, 127, 127, 127, 127, 127, 127, 127, 126, 126));
  EXPECT_THAT(slice(out, 174, 13), ElementsAre(129, 129, 128, 128, 128, 128, 128, 128, 128, 128, 128, 129, 129));
}

TEST(TableReplay, BandsOfLevels) {
  const struct {
    int32_t motor, level;
    const uint8_t* table;
    std::size_t length;
  } rows[] = {{832, 0, wave_custom_2p5T, 576},
              {832, 25, wave_custom_2p5T, 576},
              {832, 26, wave_custom_1T, 208},
              {832, 50, wave_custom_1T, 208},
              {832, 51, wave_custom_2T, 540},
              {832, 75, wave_custom_2T, 540},
              {832, 76, wave_custom_1p5T, 312},
              {832, 100, wave_custom_1p5T, 312},
              {9595, 0, wave_custom_T05, 824},
              {9595, 5, wave_custom_T05, 824},
              {9595, 6, wave_custom_T10, 804},
              {9595, 10, wave_custom_T10, 804},
              {9595, 11, wave_custom_T15, 824},
              {9595, 50, wave_custom_T50, 824},
              {9595, 51, wave_custom_T55, 824},
              {9595, 95, wave_custom_T95, 824},
              {9595, 96, wave_custom_T100, 824},
              {9595, 100, wave_custom_T100, 824},
              {832, -1, nullptr, 0},
              {9595, 101, nullptr, 0}};
  for (const auto& row : rows) {
    const ScopedProfile profile(row.motor);
    EXPECT_EQ(tap(row.level, 100), Bytes(row.table, row.table + row.length)) << row.motor << " " << row.level;
  }
}

// What becomes of samples of known values.
TEST(TableReplay, ScalesByTheIntensity) {
  const Bytes table(wave_custom_2T, wave_custom_2T + sizeof wave_custom_2T);
  const struct {
    int32_t intensity;
    int8_t sample;
    uint8_t code;
  } rows[] = {{0, 127, 0},    {0, -127, 0},    {50, 127, 63},   {50, -127, 192}, {1, 127, 1}, {1, -127, 254},
              {7, -100, 249}, {150, 127, 190}, {-50, 127, 192}, {-50, -127, 63}, {3, 100, 2}};
  for (const auto& row : rows) {
    const auto at = std::find(table.begin(), table.end(), static_cast<uint8_t>(row.sample)) - table.begin();
    ASSERT_LT(at, 540) << int{row.sample};
    Bytes out(table.size(), 77);
    ASSERT_EQ(shortWave_func_custom_0832(60, row.intensity, out.data()), 0);
    EXPECT_EQ(out[static_cast<std::size_t>(at)], row.code) << row.intensity << " % of " << int{row.sample};
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(out[539], 0);
  }
}

TEST(ShortSignals, RefusalsByMotorAndLevel) {
  Bytes out(3, 77);
  for (const int32_t motor : {81540, 5}) {
    const ScopedProfile profile(motor);
    EXPECT_EQ(getShortSignalDataLength(50), 0);
    EXPECT_EQ(getShortSignalData(50, 100, out.data()), -1);
  }
  for (const int32_t level : {-1, 101}) {
    EXPECT_EQ(getShortSignalDataLength_0832(level), 0);
    EXPECT_EQ(getShortSignalData_0832(level, 100, out.data()), 0);
    EXPECT_EQ(shortWave_func_custom_0832(level, 100, out.data()), -1);
    EXPECT_EQ(get_custom_wave_len_9595(level), 0);
    EXPECT_EQ(getShortSignalData_9595(level, 100, out.data()), 0);
    EXPECT_EQ(shortWave_func_custom_9595(level, 100, out.data()), -1);
  }
  EXPECT_THAT(out, Each(77));
}

TEST(ShortSignals, RoutingOf1040KeepsTheProfilesFrequencies) {
  const Bytes own = tap(30, 100);
  const ScopedProfile profile(9595);
  EXPECT_EQ(getShortSignalDataLength_1040(30), 416);
  EXPECT_EQ(getShortSignalDataLength_1040(80), get_wav_len_high_frequency(80));
  EXPECT_EQ(getShortSignalDataLength_1040(80), 184 + 60 + 80 + 120);  // two cycles at 260 Hz, not at 305
  Bytes routed(416);
  EXPECT_EQ(getShortSignalData_1040(30, 100, routed.data()), 0);
  EXPECT_EQ(routed, own);
}

TEST(Widening, ZeroExtends) {
  const uint8_t bytes[] = {0, 1, 128, 255};
  Integers out(4, -1);
  EXPECT_EQ(transStringDataToInt(bytes, 0, out.data()), 0);
  EXPECT_EQ(transStringDataToInt(bytes, -3, out.data()), 0);
  EXPECT_THAT(out, Each(-1));
  EXPECT_EQ(transStringDataToInt(bytes, 4, out.data()), 0);
  EXPECT_THAT(out, ElementsAre(0, 1, 128, 255));
}

}  // namespace
