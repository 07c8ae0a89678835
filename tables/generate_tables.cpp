// SPDX-License-Identifier: Apache-2.0
// Writes tables.cpp, the stored bursts, from their recipes to standard output.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "burst_recipes.h"

namespace {

using lrasynth::recipes::Lobe;
using lrasynth::recipes::Recipe;

constexpr double kQuarterTurn = std::numbers::pi / 2;

// Half a sine that starts at rest.
double half_sine(const Lobe& lobe, int i) { return std::sin(2 * kQuarterTurn * i / lobe.length); }

// Half a sine between the samples, so that none of them is rest.
double inner_half_sine(const Lobe& lobe, int i) { return std::sin(2 * kQuarterTurn * (i + 0.5) / lobe.length); }

// A slow rise without a corner over most of the lobe, then a quarter of a sine back.
double slow_rise(const Lobe& lobe, int i) {
  constexpr double kRiseShare = 0.72;
  const double rise = kRiseShare * lobe.length;
  const double position = i + 0.5;
  if (position < rise) return std::pow(std::sin(kQuarterTurn * position / rise), 2);
  return std::cos(kQuarterTurn * (position - rise) / (lobe.length - rise));
}

template <class Shape>
void draw(const Lobe& lobe, Shape shape, int least, std::vector<int>& samples) {
  for (int i = 0; i < lobe.length; ++i) {
    const int magnitude = static_cast<int>(std::lround(std::abs(lobe.peak) * shape(lobe, i)));
    samples[lobe.start + i] = std::max(magnitude, least) * (lobe.peak < 0 ? -1 : 1);
  }
}

std::vector<int> burst_0832(const Recipe& recipe) {
  std::vector<int> samples(recipe.length, 0);
  for (const Lobe& lobe : recipe.lobes) draw(lobe, half_sine, 0, samples);
  return samples;
}

std::vector<int> burst_9595(const Recipe& recipe) {
  std::vector<int> samples(recipe.length, 0);
  draw(recipe.lobes.front(), slow_rise, 1, samples);
  for (auto lobe = recipe.lobes.begin() + 1; lobe != recipe.lobes.end(); ++lobe) {
    draw(*lobe, inner_half_sine, 1, samples);
  }
  return samples;
}

void print(const Recipe& recipe, std::vector<int> samples) {
  constexpr std::size_t kPerLine = 24;
  std::copy(recipe.opening.begin(), recipe.opening.end(), samples.begin());
  std::printf("\nconst uint8_t %s[%d] = {", recipe.name, recipe.length);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    std::printf("%s%d,", i % kPerLine == 0 ? "\n    " : " ", static_cast<uint8_t>(samples[i]));
  }
  std::printf("\n};\n");
}

}  // namespace

int main() {
  std::printf(
      "// SPDX-License-Identifier: Apache-2.0\n"
      "// The stored bursts of motors 832 and 9595 as sample codes. Made by tables/generate_tables.cpp.\n"
      "#include \"transient/tables.h\"\n\n"
      "// clang-format off\n");
  for (const Recipe& recipe : lrasynth::recipes::kMotor0832) print(recipe, burst_0832(recipe));
  for (const Recipe& recipe : lrasynth::recipes::kMotor9595) print(recipe, burst_9595(recipe));
  return EXIT_SUCCESS;
}
