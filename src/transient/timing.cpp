// SPDX-License-Identifier: Apache-2.0
// Timing model of the four-segment transient: the level bands and the lengths made from them, with their exports.
#include "transient/timing.h"

#include "curves/curves.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "tone/time_grid.h"

namespace lrasynth {
namespace {

constexpr int32_t kF2Hz = 100;
constexpr float kEdgeF1Cycles = 1.0F;
constexpr float kEdgeF2Cycles = 0.5F;

struct LevelBand {
  int32_t from;
  bool mid;
  float drive_cycles;
  int32_t f1_hz;
  float zero_ms;
  int32_t f1_fortieths;  // of the intensity
  int32_t f2_fortieths;
};

constexpr LevelBand kBands[] = {
    {71, false, 2.0F, 300, 2.5F, 0, 0},     {63, true, 1.0F, 300, 4.2F, 40, 7},  {56, true, 1.0F, 300, 4.1F, 40, 31},
    {52, true, 1.0F, 300, 4.0F, 40, 7},     {51, true, 1.0F, 300, 3.5F, 40, 7},  {47, true, 1.0F, 300, 3.5F, 40, 19},
    {44, true, 1.0F, 300, 3.5F, 40, 26},    {40, true, 1.0F, 300, 3.2F, 40, 26}, {36, true, 1.0F, 300, 2.7F, 40, 10},
    {25, true, 1.0F, 300, 2.5F, 30, 0},     {1, false, 1.5F, 300, 2.5F, 0, 0},   {0, false, 1.5F, 200, 3.0F, 0, 0},
    {kBelow, false, 1.5F, 300, 2.5F, 0, 0},
};

const LevelBand& band_of(int32_t level) { return row_at<LevelBand>(kBands, level); }

int32_t fortieths(int32_t factor, int32_t intensity) { return static_cast<int32_t>(int64_t{factor} * intensity / 40); }

int32_t f1_amplitude(int32_t level, int32_t intensity) { return fortieths(band_of(level).f1_fortieths, intensity); }
int32_t f2_amplitude(int32_t level, int32_t intensity) { return fortieths(band_of(level).f2_fortieths, intensity); }

}  // namespace

bool is_mid_level(int32_t level) { return band_of(level).mid; }

// Both shapes are driven at half the intensity; only the mid level also halves what F1 and F2 see.
TransientShape mid_shape(int32_t drive_hz, int32_t level, int32_t intensity) {
  const int32_t half = intensity / 2;
  return custom_mid_shape(drive_hz, band_of(level).f1_hz, kF2Hz, band_of(level).zero_ms, half,
                          f1_amplitude(level, half), f2_amplitude(level, half));
}

TransientShape edge_shape(int32_t drive_hz, int32_t level, int32_t intensity) {
  const LevelBand& band = band_of(level);
  return {.drive = {drive_hz, band.drive_cycles, intensity / 2},
          .zero_ms = band.zero_ms,
          .f1 = {band.f1_hz, kEdgeF1Cycles, f1_amplitude(level, intensity)},
          .f2 = {kF2Hz, kEdgeF2Cycles, f2_amplitude(level, intensity)}};
}

TransientShape custom_mid_shape(int32_t drive_hz, int32_t f1_hz, int32_t f2_hz, float zero_ms, int32_t amplitude,
                                int32_t f1_amplitude, int32_t f2_amplitude) {
  return {.drive = {drive_hz, 1.0F, amplitude},
          .zero_ms = zero_ms,
          .f1 = {f1_hz, 0.5F, f1_amplitude},
          .f2 = {f2_hz, 0.5F, f2_amplitude},
          .f2_mirrored = true,
          .coding = TransientCoding::kCodeFirst};
}

float zero_samples(Rate rate, float zero_ms) {
  const float product = rate.single() * zero_ms;
  return product / 1000.0F;
}

// The segments are truncated one by one, the zero time only together with their sum, which is single precision.
int32_t transient_length(Rate rate, const TransientShape& shape) {
  if (shape.drive.hz <= 0) return 0;
  int64_t segments = 0;
  for (const SegmentShape& segment : {shape.drive, shape.f1, shape.f2}) {
    segments += sine_count(rate, segment.hz, segment.cycles);
  }
  return truncate(zero_samples(rate, shape.zero_ms) + static_cast<float>(segments));
}

}  // namespace lrasynth

using namespace lrasynth;

float getC0(int32_t level) { return band_of(level).drive_cycles; }
float getC1() { return kEdgeF1Cycles; }
float getC2() { return kEdgeF2Cycles; }
int32_t getF1(int32_t level) { return band_of(level).f1_hz; }
int32_t getF2() { return kF2Hz; }
float getZeroTime(int32_t level) { return band_of(level).zero_ms; }
int32_t getA1(int32_t level, int32_t intensity) { return f1_amplitude(level, intensity); }
int32_t getA2(int32_t level, int32_t intensity) { return f2_amplitude(level, intensity); }

// Half cycles of the drive.
int32_t getCycle(int32_t level) { return static_cast<int32_t>(2.0F * band_of(level).drive_cycles); }

int32_t get_wave_func_wave_len(int32_t level, int32_t f1Hz, int32_t f2Hz, float zeroTimeMs) {
  const Profile profile = current_profile();
  return transient_length(profile.rate, custom_mid_shape(level_hz(profile, level), f1Hz, f2Hz, zeroTimeMs));
}

int32_t get_wave_func_wave_len_custom(int32_t level, int32_t f1Hz, int32_t f2Hz, float c0, float c1, float c2,
                                      float zeroTimeMs) {
  const Profile profile = current_profile();
  return transient_length(profile.rate, {{level_hz(profile, level), c0}, zeroTimeMs, {f1Hz, c1}, {f2Hz, c2}});
}

int32_t get_custom_wave_len(int32_t level) {
  const Profile profile = current_profile();
  return transient_length(profile.rate, mid_shape(level_hz(profile, level), level, 0));
}

int32_t get_wav_len_high_frequency(int32_t level) {
  const Profile profile = current_profile();
  return transient_length(profile.rate, edge_shape(level_hz(profile, level), level, 0));
}
