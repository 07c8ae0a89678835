// SPDX-License-Identifier: Apache-2.0
// Recipes of the 24 stored bursts: what each one is, as lobes (half-waves) of a position, a length and a peak.
//
// They stand in for measured bursts. Whoever owns measurements for a motor replaces tables.cpp and leaves this file
// out.
#pragma once

#include <cstdint>
#include <vector>

namespace lrasynth::recipes {

struct Lobe {
  int start;   // samples
  int length;  // samples
  int peak;    // signed sample value
};

struct Recipe {
  const char* name;
  int length;                // samples, rest after the last lobe included
  std::vector<int> opening;  // samples known one by one, from position 0 on
  std::vector<Lobe> lobes;
};

// Motor 832 starts a lobe at rest and gives each 52 samples: 104 a period, about 231 Hz at 24000 samples a second.
inline constexpr int kLobe0832 = 52;

inline std::vector<Lobe> lobes_0832(const std::vector<int>& peaks) {
  std::vector<Lobe> lobes;
  for (const int peak : peaks) lobes.push_back({static_cast<int>(lobes.size()) * kLobe0832, kLobe0832, peak});
  return lobes;
}

// The bursts of motor 832 rise almost alike.
inline const std::vector<int> kOpening1T = {0,  7,  15, 23, 30,  38,  44,  52,  59,  66,  72,  79,
                                            84, 90, 95, 99, 105, 108, 113, 116, 119, 122, 124, 124};
inline const std::vector<int> kOpening0832 = {0,  7,  15, 23,  30,  38,  45,  52,  59,  66,  72,  79,
                                              84, 90, 95, 100, 105, 108, 113, 116, 119, 122, 124, 124};

// Drive lobes, then the braking lobes, which begin with the sign of the last drive lobe.
inline const std::vector<Recipe> kMotor0832 = {
    {"wave_custom_2p5T", 576, kOpening0832, lobes_0832({127, -127, 127, -127, 127, 127, -127, 74, -75, 51, -52})},
    {"wave_custom_1T", 208, kOpening1T, lobes_0832({127, -127, -117, 117})},
    {"wave_custom_2T", 540, kOpening0832, lobes_0832({127, -127, 127, -127, -127, 127, -71, 71, -32})},
    {"wave_custom_1p5T", 312, kOpening0832, lobes_0832({127, -127, 127, 112, -113, 112})},
};

inline const std::vector<int> kOpeningT100 = {0, 0, 0, 0, 0, 1, 1, 1, 2, 3, 4, 6, 9, 11, 14, 17, 21, 24, 27, 30};

// The bursts of motor 9595 start late, rise slowly and get shorter as the level rises. The longest four ring out.
inline const std::vector<Recipe> kMotor9595 = {
    {"wave_custom_T05",
     824,
     {},
     {{34, 216, 67}, {250, 147, -127}, {397, 146, 121}, {543, 147, -44}, {690, 45, 2}, {735, 44, -1}, {779, 45, 1}}},
    {"wave_custom_T10",
     804,
     {},
     {{32, 205, 68}, {237, 138, -127}, {375, 138, 120}, {513, 138, -43}, {651, 31, 2}, {682, 31, -1}}},
    {"wave_custom_T15",
     824,
     {},
     {{30, 194, 69}, {224, 129, -127}, {353, 130, 118}, {483, 129, -42}, {612, 24, 2}, {636, 24, -1}}},
    {"wave_custom_T20",
     824,
     {},
     {{28, 183, 71}, {211, 122, -127}, {333, 123, 117}, {456, 122, -42}, {578, 11, 3}, {589, 11, -1}}},
    {"wave_custom_T25", 824, {}, {{26, 171, 76}, {197, 118, -127}, {315, 117, 115}, {432, 118, -43}}},
    {"wave_custom_T30", 824, {}, {{24, 153, 86}, {177, 110, -127}, {287, 110, 111}, {397, 110, -56}}},
    {"wave_custom_T35",
     824,
     {},
     {{22, 110, 104}, {132, 68, -127}, {200, 68, 40}, {268, 67, -3}, {335, 68, 108}, {403, 68, -74}}},
    {"wave_custom_T40",
     824,
     {},
     {{20, 103, 120}, {123, 63, -127}, {186, 64, 55}, {250, 63, -25}, {313, 64, 109}, {377, 63, -92}}},
    {"wave_custom_T45",
     824,
     {},
     {{19, 96, 125}, {115, 59, -127}, {174, 60, 70}, {234, 59, -51}, {293, 60, 118}, {353, 59, -102}}},
    {"wave_custom_T50",
     824,
     {},
     {{18, 90, 127}, {108, 56, -127}, {164, 56, 87}, {220, 56, -78}, {276, 56, 127}, {332, 56, -108}}},
    {"wave_custom_T55",
     824,
     {},
     {{16, 82, 117}, {98, 52, -118}, {150, 52, 105}, {202, 51, -109}, {253, 52, 127}, {305, 52, -106}}},
    {"wave_custom_T60",
     824,
     {},
     {{15, 74, 101}, {89, 48, -107}, {137, 48, 117}, {185, 49, -127}, {234, 48, 120}, {282, 48, -97}}},
    {"wave_custom_T65",
     824,
     {},
     {{13, 68, 82}, {81, 45, -92}, {126, 45, 116}, {171, 46, -127}, {217, 45, 105}, {262, 45, -82}}},
    {"wave_custom_T70",
     824,
     {},
     {{12, 62, 70}, {74, 43, -84}, {117, 42, 116}, {159, 43, -127}, {202, 42, 96}, {244, 43, -73}}},
    {"wave_custom_T75",
     824,
     {},
     {{11, 56, 62}, {67, 40, -79}, {107, 41, 117}, {148, 40, -127}, {188, 41, 90}, {229, 40, -66}}},
    {"wave_custom_T80",
     824,
     {},
     {{10, 51, 56}, {61, 39, -77}, {100, 38, 118}, {138, 39, -127}, {177, 38, 86}, {215, 39, -61}}},
    {"wave_custom_T85",
     824,
     {},
     {{9, 45, 51}, {54, 37, -75}, {91, 37, 118}, {128, 38, -127}, {166, 37, 83}, {203, 37, -58}}},
    {"wave_custom_T90",
     824,
     {},
     {{8, 40, 48}, {48, 36, -74}, {84, 36, 119}, {120, 35, -127}, {155, 36, 81}, {191, 36, -55}}},
    {"wave_custom_T95",
     824,
     {},
     {{6, 36, 46}, {42, 35, -73}, {77, 35, 119}, {112, 34, -127}, {146, 35, 79}, {181, 35, -53}}},
    {"wave_custom_T100",
     824,
     kOpeningT100,
     {{5, 32, 44}, {37, 34, -72}, {71, 34, 119}, {105, 34, -127}, {139, 34, 78}, {173, 34, -51}}},
};

}  // namespace lrasynth::recipes
