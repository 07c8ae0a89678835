// Replay of stored bursts, and its exports.
#include "transient/table_replay.h"

#include <algorithm>

#include "curves/frequency.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "tone/speculation.h"
#include "transient/scaling.h"

namespace lrasynth {
namespace {

struct BurstBand {
  int32_t to;  // highest level of the band
  Burst burst;
};

// Not ordered by drive periods: 2.5 for the lowest levels, then 1, 2 and 1.5.
constexpr BurstBand kBursts0832[] = {
    {25, wave_custom_2p5T}, {50, wave_custom_1T}, {75, wave_custom_2T}, {100, wave_custom_1p5T}};

// Bands of five levels, but for the first, which has six.
constexpr BurstBand kBursts9595[] = {
    {5, wave_custom_T05},  {10, wave_custom_T10}, {15, wave_custom_T15}, {20, wave_custom_T20},
    {25, wave_custom_T25}, {30, wave_custom_T30}, {35, wave_custom_T35}, {40, wave_custom_T40},
    {45, wave_custom_T45}, {50, wave_custom_T50}, {55, wave_custom_T55}, {60, wave_custom_T60},
    {65, wave_custom_T65}, {70, wave_custom_T70}, {75, wave_custom_T75}, {80, wave_custom_T80},
    {85, wave_custom_T85}, {90, wave_custom_T90}, {95, wave_custom_T95}, {100, wave_custom_T100}};

Burst burst_of(std::span<const BurstBand> bands, int32_t level) {
  if (level < kMinLevel || level > kMaxLevel) return {};
  const BurstBand* band = bands.data();
  while (level > band->to) ++band;
  return band->burst;
}

void replay_nominal(const Scaling& scaling, const uint8_t* codes, int32_t length, uint8_t* out) {
  uint8_t block[kBlock] = {};
  for (int32_t first = 0; first < length; first += kBlock) {
    const int32_t n = std::min(kBlock, length - first);
    std::copy_n(codes + first, n, block);
    for_whole_steps(n, [&](int32_t j) { block[j] = scaling.nominal(block[j]); });
    std::copy_n(block, n, out + first);
  }
}

int32_t write_burst(Burst burst, int32_t intensity, uint8_t* out) {
  const auto length = static_cast<int32_t>(burst.size());
  if (length == 0 || out == nullptr) return -1;
  replay(burst, intensity, out, length);
  return 0;
}

}  // namespace

Burst burst_0832(int32_t level) { return burst_of(kBursts0832, level); }
Burst burst_9595(int32_t level) { return burst_of(kBursts9595, level); }

void replay(Burst burst, int32_t intensity, uint8_t* out, int32_t capacity) {
  const Scaling scaling(intensity);
  const int32_t length = std::min(static_cast<int32_t>(burst.size()), capacity);
  const uint8_t* const codes = burst.data();
  if (intensity >= 0 && intensity <= 100) return replay_nominal(scaling, codes, length, out);
  for (int32_t i = 0; i < length; ++i) out[i] = scaling.exact(codes[i]);
}

}  // namespace lrasynth

int32_t get_custom_wave_len_0832(int32_t level) { return static_cast<int32_t>(lrasynth::burst_0832(level).size()); }
int32_t get_custom_wave_len_9595(int32_t level) { return static_cast<int32_t>(lrasynth::burst_9595(level).size()); }

int32_t shortWave_func_custom_0832(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_burst(lrasynth::burst_0832(level), intensity, out);
}

int32_t shortWave_func_custom_9595(int32_t level, int32_t intensity, uint8_t* out) {
  return lrasynth::write_burst(lrasynth::burst_9595(level), intensity, out);
}

int32_t transStringDataToInt(const uint8_t* source, int32_t count, int32_t* destination) {
  if (lrasynth::refuses(source, count) || lrasynth::refuses(destination, count)) return -1;
  for (int32_t i = 0; i < count; ++i) destination[i] = source[i];
  return 0;
}
