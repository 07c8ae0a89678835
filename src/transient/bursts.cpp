// SPDX-License-Identifier: Apache-2.0
// The bands of levels that share a stored burst.
#include "transient/bursts.h"

#include "profile/motor.h"
#include "transient/tables.h"

namespace lrasynth {
namespace {

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

}  // namespace

std::span<const BurstBand> bursts_of(int32_t motor_code) {
  switch (motor_code) {
    case LRASYNTH_MOTOR_832:
      return kBursts832;
    case LRASYNTH_MOTOR_9595:
      return kBursts9595;
    default:
      return {};
  }
}

}  // namespace lrasynth
