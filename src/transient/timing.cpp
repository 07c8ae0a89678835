// SPDX-License-Identifier: Apache-2.0
// What the segments of each level's transient are, and the exports of motor 1040's transients.
#include "curves/curves.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "transient/transient.h"

namespace lrasynth {
namespace {

constexpr int32_t kF2Hz = 100;
constexpr float kEdgeF1Cycles = 1.0F;
constexpr float kEdgeF2Cycles = 0.5F;

struct LevelBand {
  int32_t from;
  bool mid;  // whether the level's tap has the mid-level shape, or the edge-level one
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

// The mid-level shape with segments of its own.
TransientShape custom_mid_shape(const Profile& profile, int32_t level, int32_t amplitude, int32_t f1_hz,
                                int32_t f1_amplitude, int32_t f2_hz, int32_t f2_amplitude, float zero_ms) {
  return {.drive = {level_hz(profile, level), 1.0F, amplitude},
          .zero_ms = zero_ms,
          .f1 = {f1_hz, 0.5F, f1_amplitude},
          .f2 = {f2_hz, 0.5F, f2_amplitude},
          .f2_mirrored = true,
          .code_first = true};
}

// Any level can be had in either shape. Both are driven at half the intensity; only the mid level also halves what F1
// and F2 see.

TransientShape mid_shape(const Profile& profile, int32_t level, int32_t intensity) {
  const LevelBand& band = band_of(level);
  const int32_t half = intensity / 2;
  return custom_mid_shape(profile, level, half, band.f1_hz, fortieths(band.f1_fortieths, half), kF2Hz,
                          fortieths(band.f2_fortieths, half), band.zero_ms);
}

TransientShape edge_shape(const Profile& profile, int32_t level, int32_t intensity) {
  const LevelBand& band = band_of(level);
  return {.drive = {level_hz(profile, level), band.drive_cycles, intensity / 2},
          .zero_ms = band.zero_ms,
          .f1 = {band.f1_hz, kEdgeF1Cycles, fortieths(band.f1_fortieths, intensity)},
          .f2 = {kF2Hz, kEdgeF2Cycles, fortieths(band.f2_fortieths, intensity)}};
}

Transient mid_transient(const Profile& profile, int32_t level, int32_t intensity) {
  return {profile.rate, mid_shape(profile, level, intensity)};
}

Transient edge_transient(const Profile& profile, int32_t level, int32_t intensity) {
  return {profile.rate, edge_shape(profile, level, intensity)};
}

lrasynth_segment told(Rate rate, const SegmentShape& segment) {
  const bool silent = segment.amplitude == 0;
  return {silent ? 0 : segment.hz, TimeGrid(rate, segment.hz, segment.cycles).count};
}

}  // namespace

Transient level_transient(const Profile& profile, int32_t level, int32_t intensity) {
  return (band_of(level).mid ? mid_transient : edge_transient)(profile, level, intensity);
}

void tell_segments(const Profile& profile, int32_t level, lrasynth_segment* segments) {
  const TransientShape shape = (band_of(level).mid ? mid_shape : edge_shape)(profile, level, 100);
  segments[0] = told(profile.rate, shape.drive);
  segments[1] = {0, zero_count(profile.rate, shape.zero_ms)};
  segments[2] = told(profile.rate, shape.f1);
  segments[3] = told(profile.rate, shape.f2);
}

}  // namespace lrasynth

#ifndef LRASYNTH_NO_BARE_NAMES

using namespace lrasynth;

namespace {

int32_t write_integers(const Transient& transient, int32_t* out) {
  if (refuses(out, transient.length())) return -1;
  transient.draw(Window<int32_t>{0, transient.drawn_length(), out});
  return 0;
}

}  // namespace

float getC0(int32_t level) { return band_of(level).drive_cycles; }
float getC1() { return kEdgeF1Cycles; }
float getC2() { return kEdgeF2Cycles; }
int32_t getF1(int32_t level) { return band_of(level).f1_hz; }
int32_t getF2() { return kF2Hz; }
float getZeroTime(int32_t level) { return band_of(level).zero_ms; }
int32_t getA1(int32_t level, int32_t intensity) { return fortieths(band_of(level).f1_fortieths, intensity); }
int32_t getA2(int32_t level, int32_t intensity) { return fortieths(band_of(level).f2_fortieths, intensity); }

// Half cycles of the drive.
int32_t getCycle(int32_t level) { return static_cast<int32_t>(2.0F * band_of(level).drive_cycles); }

int32_t get_custom_wave_len(int32_t level) { return mid_transient(current_profile(), level, 0).length(); }
int32_t get_wav_len_high_frequency(int32_t level) { return edge_transient(current_profile(), level, 0).length(); }

int32_t shortWave_func(int32_t level, int32_t intensity, uint8_t* out) {
  return write(mid_transient(current_profile(), level, intensity), out);
}

int32_t shortWave_func_custom(int32_t level, int32_t intensity, uint8_t* out) {
  return write(edge_transient(current_profile(), level, intensity), out);
}

int32_t get_wave_func_wave_len(int32_t level, int32_t f1Hz, int32_t f2Hz, float zeroTimeMs) {
  const Profile profile = current_profile();
  return Transient(profile.rate, custom_mid_shape(profile, level, 0, f1Hz, 0, f2Hz, 0, zeroTimeMs)).length();
}

int32_t wave_func(int32_t level, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2, int32_t* out,
                  float zeroTimeMs) {
  const Profile profile = current_profile();
  const TransientShape shape = custom_mid_shape(profile, level, intensity, f1Hz, a1, f2Hz, a2, zeroTimeMs);
  return write_integers({profile.rate, shape}, out);
}

int32_t get_wave_func_wave_len_custom(int32_t level, int32_t f1Hz, int32_t f2Hz, float c0, float c1, float c2,
                                      float zeroTimeMs) {
  const Profile profile = current_profile();
  return Transient(profile.rate, {{level_hz(profile, level), c0}, zeroTimeMs, {f1Hz, c1}, {f2Hz, c2}}).length();
}

int32_t wave_func_custom(int32_t frequencyHz, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2,
                         int32_t reverse, int32_t* out, float c0, float c1, float c2, float zeroTimeMs) {
  const TransientShape shape = {{frequencyHz, c0, intensity}, zeroTimeMs, {f1Hz, c1, a1}, {f2Hz, c2, a2}, reverse == 1};
  return write_integers({current_profile().rate, shape}, out);
}

#endif  // LRASYNTH_NO_BARE_NAMES
