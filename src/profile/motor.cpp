// SPDX-License-Identifier: Apache-2.0
// The table of motors, hand-tuned.
#include "profile/motor.h"

#include "lrasynth.h"

namespace lrasynth {
namespace {

constexpr LevelPiece kLevels1040[] = {{71, 4.5, 170}, {50, 2.6, 170}, {40, 1.4, 160}, {kBelow, 1.4, 150}};
constexpr LevelPiece kLevels9595[] = {{50, 3.0, 170}, {40, 1.4, 160}, {kBelow, 1.4, 150}};
constexpr LevelPiece kLevels832[] = {{50, 1.3, 235}, {kBelow, 0.7, 235}};
constexpr LevelPiece kLevels81540[] = {{50, 4.4, 130}, {kBelow, 1.0, 130}};
constexpr LevelPiece kLevelsThemselves[] = {{kBelow, 1.0, 50}};

// The slope drops from 1.8 to 1.6 at -40 without an intercept, so that -40 gives a higher frequency than -39.
constexpr OffsetPiece kOffsets1040[] = {{1, 2.2, 30}, {0}, {-39, 1.8}, {kBelow, 1.6}};
constexpr OffsetPiece kOffsets9595[] = {{1, 2.0, 30}, {0}, {kBelow, 1.4}};
constexpr OffsetPiece kBoostedOffsets832[] = {{1, 1.3}, {0}, {kBelow, 0.7}};
constexpr OffsetPiece kOffsets832[] = {{kBelow, 0.3}};
constexpr OffsetPiece kOffsets81540[] = {{0, 4.4}, {kBelow, 1.0}};
constexpr OffsetPiece kBaseAlone[] = {{kBelow}};

constexpr GainCurve kGain1040 = {4000, 0.25};
constexpr GainCurve kGain9595 = {3496, 0.16};
constexpr GainCurve kBoostedGain832 = {4350, 0.3};
constexpr GainCurve kGain832 = {7000, 0.6};

// The share falls from 0.8 to 0.7 at level 61.
constexpr ShareBand kShares1040[] = {{71, 1.0}, {61, 0.7},  {41, 0.8}, {36, 0.5},
                                     {31, 0.3}, {16, 0.25}, {10, 0.2}, {kBelow, 0.1}};

// Not ordered by drive periods: 2.5 for the lowest levels, then 1, 2 and 1.5.
constexpr BurstBand kBursts832[] = {
    {101, {}}, {76, wave_custom_1p5T}, {51, wave_custom_2T}, {26, wave_custom_1T}, {0, wave_custom_2p5T}, {kBelow, {}}};

// Bands of five levels, but for the lowest, which has six.
constexpr BurstBand kBursts9595[] = {{101, {}},
                                     {96, wave_custom_T100},
                                     {91, wave_custom_T95},
                                     {86, wave_custom_T90},
                                     {81, wave_custom_T85},
                                     {76, wave_custom_T80},
                                     {71, wave_custom_T75},
                                     {66, wave_custom_T70},
                                     {61, wave_custom_T65},
                                     {56, wave_custom_T60},
                                     {51, wave_custom_T55},
                                     {46, wave_custom_T50},
                                     {41, wave_custom_T45},
                                     {36, wave_custom_T40},
                                     {31, wave_custom_T35},
                                     {26, wave_custom_T30},
                                     {21, wave_custom_T25},
                                     {16, wave_custom_T20},
                                     {11, wave_custom_T15},
                                     {6, wave_custom_T10},
                                     {0, wave_custom_T05},
                                     {kBelow, {}}};

// clang-format off
constexpr Motor kMotors[] = {
    {LRASYNTH_MOTOR_1040, 170, kLevels1040, kOffsets1040, kOffsets1040, kGain1040, kGain1040,
     kShares1040, TapKind::kFourSegments, {}},
    {LRASYNTH_MOTOR_832, 235, kLevels832, kOffsets832, kBoostedOffsets832, kGain832, kBoostedGain832,
     {}, TapKind::kStoredBurst, kBursts832},
    {LRASYNTH_MOTOR_9595, 170, kLevels9595, kOffsets9595, kOffsets9595, kGain9595, kGain9595,
     {}, TapKind::kStoredBurst, kBursts9595},
    {LRASYNTH_MOTOR_81540, 130, kLevels81540, kOffsets81540, kOffsets81540, kGain1040, kGain1040,
     {}, TapKind::kNone, {}},
};
constexpr Motor kEveryOtherMotor =
    {0, 170, kLevelsThemselves, kBaseAlone, kBaseAlone, kGain1040, kGain1040,
     {}, TapKind::kNone, {}};
// clang-format on

}  // namespace

const Motor& motor_of(int32_t code) {
  for (const Motor& motor : kMotors) {
    if (motor.code == code) return motor;
  }
  return kEveryOtherMotor;
}

}  // namespace lrasynth
