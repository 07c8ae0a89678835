// SPDX-License-Identifier: Apache-2.0
// The table of motors, hand-tuned.
#include "profile/motor.h"

#include <iterator>

#include "lrasynth.h"

namespace lrasynth {
namespace {

using enum TapKind;

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

constexpr Motor kMotors[] = {
    {LRASYNTH_MOTOR_832, 235, kLevels832, kOffsets832, kBoostedOffsets832, kGain832, kBoostedGain832, {}, kStoredBurst},
    {LRASYNTH_MOTOR_1040, 170, kLevels1040, kOffsets1040, {}, kGain1040, kGain1040, kShares1040, kFourSegments},
    {LRASYNTH_MOTOR_9595, 170, kLevels9595, kOffsets9595, {}, kGain9595, kGain9595, {}, kStoredBurst},
    {LRASYNTH_MOTOR_81540, 130, kLevels81540, kOffsets81540, {}, kGain1040, kGain1040, {}, kNone},
};
constexpr Motor kEveryOtherMotor = {0, 170, kLevelsThemselves, kBaseAlone, {}, kGain1040, kGain1040, {}, kNone};

}  // namespace

const Motor& motor_of(int32_t code) {
  for (const Motor& motor : kMotors) {
    if (motor.code == code) return motor;
  }
  return kEveryOtherMotor;
}

}  // namespace lrasynth

int32_t lrasynth_motor(int32_t index) {
  return index >= 0 && index < std::ssize(lrasynth::kMotors) ? lrasynth::kMotors[index].code : 0;
}
