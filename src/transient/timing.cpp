// Timing model of the four-segment transient: the level bands and the lengths made from them, with their exports.
#include "transient/timing.h"

#include "curves/frequency.h"
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

// As the profile's motor drives the level.
int32_t length_at(int32_t level, TransientShape (*shape)(int32_t drive_hz, int32_t level)) {
  const Profile profile = current_profile();
  return transient_length(profile.rate, shape(level_hz(profile.motor, level), level));
}

}  // namespace

bool is_mid_level(int32_t level) { return band_of(level).mid; }

TransientShape mid_shape(int32_t drive_hz, int32_t f1_hz, int32_t f2_hz, float zero_ms) {
  return {.drive_hz = drive_hz,
          .f1_hz = f1_hz,
          .f2_hz = f2_hz,
          .drive_cycles = 1.0F,
          .f1_cycles = 0.5F,
          .f2_cycles = 0.5F,
          .zero_ms = zero_ms};
}

TransientShape mid_shape(int32_t drive_hz, int32_t level) {
  const LevelBand& band = band_of(level);
  return mid_shape(drive_hz, band.f1_hz, kF2Hz, band.zero_ms);
}

TransientShape edge_shape(int32_t drive_hz, int32_t level) {
  const LevelBand& band = band_of(level);
  return {.drive_hz = drive_hz,
          .f1_hz = band.f1_hz,
          .f2_hz = kF2Hz,
          .drive_cycles = band.drive_cycles,
          .f1_cycles = kEdgeF1Cycles,
          .f2_cycles = kEdgeF2Cycles,
          .zero_ms = band.zero_ms};
}

int32_t f1_amplitude(int32_t level, int32_t intensity) { return fortieths(band_of(level).f1_fortieths, intensity); }

int32_t f2_amplitude(int32_t level, int32_t intensity) { return fortieths(band_of(level).f2_fortieths, intensity); }

float zero_samples(Rate rate, float zero_ms) {
  const float product = rate.single() * zero_ms;
  return product / 1000.0F;
}

// The segments are truncated one by one, the zero time only together with their sum, which is single precision.
int32_t transient_length(Rate rate, const TransientShape& shape) {
  if (shape.drive_hz <= 0) return 0;
  const int64_t segments = int64_t{sine_count(rate, shape.drive_hz, shape.drive_cycles)} +
                           sine_count(rate, shape.f1_hz, shape.f1_cycles) +
                           sine_count(rate, shape.f2_hz, shape.f2_cycles);
  return truncate(zero_samples(rate, shape.zero_ms) + static_cast<float>(segments));
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

// Half cycles of the drive.
int32_t getCycle(int32_t level) { return static_cast<int32_t>(2.0F * lrasynth::band_of(level).drive_cycles); }

int32_t get_wave_func_wave_len(int32_t level, int32_t f1Hz, int32_t f2Hz, float zeroTimeMs) {
  const lrasynth::Profile profile = lrasynth::current_profile();
  const int32_t drive_hz = lrasynth::level_hz(profile.motor, level);
  return lrasynth::transient_length(profile.rate, lrasynth::mid_shape(drive_hz, f1Hz, f2Hz, zeroTimeMs));
}

int32_t get_wave_func_wave_len_custom(int32_t level, int32_t f1Hz, int32_t f2Hz, float c0, float c1, float c2,
                                      float zeroTimeMs) {
  const lrasynth::Profile profile = lrasynth::current_profile();
  return lrasynth::transient_length(profile.rate, {.drive_hz = lrasynth::level_hz(profile.motor, level),
                                                   .f1_hz = f1Hz,
                                                   .f2_hz = f2Hz,
                                                   .drive_cycles = c0,
                                                   .f1_cycles = c1,
                                                   .f2_cycles = c2,
                                                   .zero_ms = zeroTimeMs});
}

int32_t get_custom_wave_len(int32_t level) { return lrasynth::length_at(level, lrasynth::mid_shape); }

int32_t get_wav_len_high_frequency(int32_t level) { return lrasynth::length_at(level, lrasynth::edge_shape); }
