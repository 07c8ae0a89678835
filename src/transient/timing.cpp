// Timing model of a motor-1040 transient: the level bands and the lengths made from them.
#include "transient/timing.h"

#include <algorithm>

#include "curves/frequency.h"
#include "curves/pieces.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"
#include "tone/time_grid.h"

namespace lrasynth {
namespace {

constexpr int32_t kF2Hz = 100;
constexpr float kEdgeF1Cycles = 1.0F;
constexpr float kEdgeF2Cycles = 0.5F;

struct LevelBand {
  int32_t from;
  float drive_cycles;
  int32_t f1_hz;
  float zero_ms;
  int32_t f1_fortieths;  // of the intensity
  int32_t f2_fortieths;
};

constexpr LevelBand kBands[] = {
    {71, 2.0F, 300, 2.5F, 0, 0},     {63, 1.0F, 300, 4.2F, 40, 7},  {56, 1.0F, 300, 4.1F, 40, 31},
    {52, 1.0F, 300, 4.0F, 40, 7},    {51, 1.0F, 300, 3.5F, 40, 7},  {47, 1.0F, 300, 3.5F, 40, 19},
    {44, 1.0F, 300, 3.5F, 40, 26},   {40, 1.0F, 300, 3.2F, 40, 26}, {36, 1.0F, 300, 2.7F, 40, 10},
    {25, 1.0F, 300, 2.5F, 30, 0},    {1, 1.5F, 300, 2.5F, 0, 0},    {0, 1.5F, 200, 3.0F, 0, 0},
    {kBelow, 1.5F, 300, 2.5F, 0, 0},
};

const LevelBand& band_of(int32_t level) { return piece_at<LevelBand>(kBands, level); }

int32_t fortieths(int32_t factor, int32_t intensity) { return static_cast<int32_t>(int64_t{factor} * intensity / 40); }

}  // namespace

bool is_mid_level(int32_t level) { return level >= 25 && level <= 70; }

TransientShape mid_shape(int32_t drive_hz, int32_t f1_hz, int32_t f2_hz, float zero_ms) {
  return {.drive_hz = drive_hz,
          .f1_hz = f1_hz,
          .f2_hz = f2_hz,
          .drive_cycles = 1.0F,
          .f1_cycles = 0.5F,
          .f2_cycles = 0.5F,
          .zero_ms = zero_ms};
}

TransientShape mid_shape(int32_t level) {
  const LevelBand& band = band_of(level);
  return mid_shape(level_frequency_hz(level), band.f1_hz, kF2Hz, band.zero_ms);
}

TransientShape edge_shape(int32_t level) {
  const LevelBand& band = band_of(level);
  return {.drive_hz = level_frequency_hz(level),
          .f1_hz = band.f1_hz,
          .f2_hz = kF2Hz,
          .drive_cycles = band.drive_cycles,
          .f1_cycles = kEdgeF1Cycles,
          .f2_cycles = kEdgeF2Cycles,
          .zero_ms = band.zero_ms};
}

int32_t f1_amplitude(int32_t level, int32_t intensity) { return fortieths(band_of(level).f1_fortieths, intensity); }

int32_t f2_amplitude(int32_t level, int32_t intensity) { return fortieths(band_of(level).f2_fortieths, intensity); }

float zero_samples(float zero_ms) {
  const float product = sample_rate() * zero_ms;
  const float samples = product / 1000.0F;
  return samples > 0.0F ? samples : 0.0F;
}

// The segments are truncated one by one, the zero time only together with their sum, which is single precision.
int32_t transient_length(const TransientShape& shape) {
  if (shape.drive_hz <= 0) return 0;
  const int64_t segments = int64_t{sine_count(shape.drive_hz, shape.drive_cycles)} +
                           sine_count(shape.f1_hz, shape.f1_cycles) + sine_count(shape.f2_hz, shape.f2_cycles);
  return truncate(zero_samples(shape.zero_ms) + static_cast<float>(segments));
}

}  // namespace lrasynth

float getC0(int32_t level) { return lrasynth::band_of(level).drive_cycles; }
float getC1() { return lrasynth::kEdgeF1Cycles; }
float getC2() { return lrasynth::kEdgeF2Cycles; }
int32_t getF1(int32_t level) { return lrasynth::band_of(level).f1_hz; }
int32_t getF2() { return lrasynth::kF2Hz; }
float getZeroTime(int32_t level) { return lrasynth::band_of(level).zero_ms; }

int32_t getA1(int32_t level, int32_t intensity) { return lrasynth::f1_amplitude(level, intensity); }
int32_t getA2(int32_t level, int32_t intensity) { return lrasynth::f2_amplitude(level, intensity); }

int32_t get_wave_func_wave_len(int32_t level, int32_t f1Hz, int32_t f2Hz, float zeroTimeMs) {
  const int32_t drive_hz = lrasynth::level_frequency_hz(level);
  return lrasynth::transient_length(lrasynth::mid_shape(drive_hz, f1Hz, f2Hz, zeroTimeMs));
}

int32_t get_wave_func_wave_len_custom(int32_t level, int32_t f1Hz, int32_t f2Hz, float c0, float c1, float c2,
                                      float zeroTimeMs) {
  return lrasynth::transient_length({.drive_hz = lrasynth::level_frequency_hz(level),
                                     .f1_hz = f1Hz,
                                     .f2_hz = f2Hz,
                                     .drive_cycles = c0,
                                     .f1_cycles = c1,
                                     .f2_cycles = c2,
                                     .zero_ms = zeroTimeMs});
}

int32_t get_custom_wave_len(int32_t level) { return lrasynth::transient_length(lrasynth::mid_shape(level)); }

int32_t get_wav_len_high_frequency(int32_t level) { return lrasynth::transient_length(lrasynth::edge_shape(level)); }
