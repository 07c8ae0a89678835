// Transients of motor 1040, table replay and the choice between them.
#include <span>

#include "support.h"

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
  for (const auto& [level, c0, f1, zero_ms, a1, a2] : rows) {
    EXPECT_THAT((std::vector{getC0(level), getZeroTime(level)}), ElementsAre(c0, zero_ms)) << level;
    EXPECT_THAT((Integers{getF1(level), getA1(level, 100), getA2(level, 100)}), ElementsAre(f1, a1, a2)) << level;
  }
  EXPECT_THAT((std::vector{getC1(), getC2()}), ElementsAre(1.0F, 0.5F));
  EXPECT_EQ(getF2(), 100);
  EXPECT_THAT((Integers{getA1(30, 3), getA1(30, -3)}), ElementsAre(2, -2));
  EXPECT_EQ(getA2(56, INT32_MAX), 1664299826);  // no 32-bit product
}

TEST(Timing, LengthsAtBothRates) {
  const int32_t rows[][5] = {{0, 552, 762, 276, 381},  {1, 516, 704, 258, 352},  {24, 432, 578, 216, 289},
                             {25, 428, 468, 214, 234}, {36, 408, 448, 204, 224}, {40, 400, 440, 200, 220},
                             {50, 385, 425, 192, 212}, {56, 387, 427, 193, 213}, {63, 378, 418, 189, 209},
                             {70, 368, 408, 184, 204}, {71, 310, 441, 155, 220}, {100, 280, 381, 140, 190}};
  for (const auto& [level, mid, edge, mid_half_rate, edge_half_rate] : rows) {
    const int32_t f1 = getF1(level);
    const float zero_ms = getZeroTime(level);
    EXPECT_THAT((Integers{get_custom_wave_len(level), get_wave_func_wave_len(level, f1, 100, zero_ms)}), Each(mid));
    EXPECT_THAT((Integers{get_wav_len_high_frequency(level),
                          get_wave_func_wave_len_custom(level, f1, 100, getC0(level), 1.0F, 0.5F, zero_ms)}),
                Each(edge));
    EXPECT_EQ(getShortSignalDataLength(level), level < 25 || level > 70 ? edge : mid);
    const ScopedProfile half_rate(1040, 1);
    EXPECT_THAT((Integers{get_custom_wave_len(level), get_wav_len_high_frequency(level)}),
                ElementsAre(mid_half_rate, edge_half_rate));
  }
  EXPECT_EQ(getShortSignalDataLength(-5), 710);
  EXPECT_THAT((Integers{get_sine_wave_len(170, 2.0F), get_sine_wave_len(170, 1.0F)}), ElementsAre(282, 141));
}

TEST(Shapes, CodesOfMotor1040) {
  const struct {
    int32_t level, intensity;
    std::size_t first;
    Bytes codes;
  } rows[] = {{50, 100, 0, {0, 6, 12, 17, 23}}, {50, 100, 33, Bytes(6, 127)},    {50, 100, 103, Bytes(6, 128)},
              {50, 100, 141, Bytes(84, 255)},   {50, 100, 225, {255, 10, 20}},   {50, 100, 245, Bytes(1, 128)},
              {50, 100, 265, {255, 253, 251}},  {50, 100, 384, Bytes(1, 253)},   {30, 100, 256, {255, 8, 15, 22}},
              {30, 100, 276, Bytes(1, 95)},     {30, 100, 296, Bytes(120, 255)}, {50, -100, 0, {0, 249, 243, 238, 232}},
              {50, -100, 225, {255, 245, 235}}, {50, -100, 265, {255, 2, 4, 5}}, {50, -100, 384, Bytes(1, 2)},
              {50, 1, 0, Bytes(1, 0)},          {50, 1, 1, Bytes(384, 255)},     {100, 100, 121, Bytes(260, 255)},
              {0, 100, 0, {0, 3, 6, 8, 11}},    {0, 100, 446, {11, 8, 6, 3}},    {0, 100, 450, Bytes(312, 255)}};
  for (const auto& row : rows) {
    EXPECT_EQ(slice(tap(row.level, row.intensity), row.first, row.codes.size()), row.codes)
        << row.level << " " << row.first;
  }
  const Bytes mid = tap(50, 100), edge = tap(100, 100);
  EXPECT_EQ(*std::min_element(mid.begin() + 265, mid.end()), 197);
  EXPECT_THAT(slice(edge, 0, 16), ElementsAre(0, 14, 27, 39, 52, 64, 75, 85, 94, 103, 110, 116, 121, 124, 127, 127));
  EXPECT_EQ(tap(120, 100), edge);
  const ScopedProfile half_rate(1040, 1);
  const Bytes half = tap(70, 100);
  EXPECT_THAT(slice(half, 104, 12), ElementsAre(255, 20, 40, 58, 75, 90, 103, 114, 121, 126, 128, 126));
  EXPECT_EQ(*std::min_element(half.begin() + 124, half.end()), 235);
}

// Two equal half-waves after the drive; only the reverse flag 1 turns the second upside down.
TEST(Shapes, ReverseFlagMirrorsTheF2Segment) {
  for (const int32_t reverse : {0, 1, 2}) {
    Integers out(static_cast<std::size_t>(get_wave_func_wave_len_custom(50, 100, 100, 1, 0.5F, 0.5F, 0)));
    ASSERT_EQ(wave_func_custom(170, 0, 100, 20, 100, 20, reverse, out.data(), 1, 0.5F, 0.5F, 0), 0);
    ASSERT_EQ(out.size(), 381U);
    EXPECT_THAT((Integers{out[201], out[321]}), ElementsAre(52, reverse == 1 ? 204 : 52)) << reverse;
  }
}

// A code of 128 stays only where no 127 stands before it.
TEST(Shapes, PeakDoesNotTipOver) {
  Integers out(240);
  ASSERT_EQ(wave_func_custom(100, 50, 100, 0, 100, 0, 0, out.data(), 1, 0, 0, 0), 0);
  EXPECT_THAT(slice(out, 54, 13), ElementsAre(126, 126, 127, 127, 127, 127, 127, 127, 127, 127, 127, 126, 126));
  EXPECT_THAT(slice(out, 174, 13), ElementsAre(129, 129, 128, 128, 128, 128, 128, 128, 128, 128, 128, 129, 129));
}

TEST(TableReplay, BandsOfLevels) {
  const struct {
    int32_t motor, lowest, highest;
    std::span<const uint8_t> table;
  } rows[] = {{832, 0, 25, wave_custom_2p5T},   {832, 26, 50, wave_custom_1T},    {832, 51, 75, wave_custom_2T},
              {832, 76, 100, wave_custom_1p5T}, {9595, 0, 5, wave_custom_T05},    {9595, 6, 10, wave_custom_T10},
              {9595, 11, 15, wave_custom_T15},  {9595, 46, 50, wave_custom_T50},  {9595, 51, 55, wave_custom_T55},
              {9595, 91, 95, wave_custom_T95},  {9595, 96, 100, wave_custom_T100}};
  for (const auto& row : rows) {
    const ScopedProfile profile(row.motor);
    const Bytes stored(row.table.begin(), row.table.end());
    for (const int32_t level : {row.lowest, row.highest})
      EXPECT_EQ(tap(level, 100), stored) << row.motor << " " << level;
  }
}

// What becomes of samples of known values.
TEST(TableReplay, ScalesByTheIntensity) {
  const int32_t rows[][3] = {{0, 127, 0},     {0, -127, 0},    {50, 127, 63},  {50, -127, 192},
                             {1, 127, 1},     {1, -127, 254},  {7, -100, 249}, {150, 127, 190},
                             {-50, 127, 192}, {-50, -127, 63}, {3, 100, 2}};
  const ScopedProfile profile(832);
  for (const auto& [intensity, sample, code] : rows) {
    const auto* const at = std::find(wave_custom_2T, std::end(wave_custom_2T), static_cast<uint8_t>(sample));
    const Bytes out = tap(60, intensity);
    EXPECT_EQ(out.at(static_cast<std::size_t>(at - wave_custom_2T)), code) << intensity << " % of " << sample;
    EXPECT_THAT((Bytes{out[0], out[539]}), Each(0));
  }
}

TEST(ShortSignals, RefusalsByMotorAndLevel) {
  Bytes out(3, kUntouched);
  for (const int32_t motor : {81540, 5}) {
    const ScopedProfile profile(motor);
    EXPECT_EQ(getShortSignalDataLength(50), 0);
    EXPECT_EQ(getShortSignalData(50, 100, out.data()), -1);
  }
  for (const int32_t level : {-1, 101}) {
    for (const auto length : {getShortSignalDataLength_0832, get_custom_wave_len_9595}) EXPECT_EQ(length(level), 0);
    for (const auto data : {getShortSignalData_0832, getShortSignalData_9595}) EXPECT_EQ(data(level, 9, out.data()), 0);
    for (const auto data : {shortWave_func_custom_0832, shortWave_func_custom_9595}) {
      EXPECT_EQ(data(level, 9, out.data()), -1);
    }
  }
  EXPECT_THAT(out, Each(kUntouched));
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
  for (const int32_t count : {0, -3}) EXPECT_EQ(transStringDataToInt(bytes, count, out.data()), 0);
  EXPECT_THAT(out, Each(-1));
  EXPECT_EQ(transStringDataToInt(bytes, 4, out.data()), 0);
  EXPECT_THAT(out, ElementsAre(0, 1, 128, 255));
}
