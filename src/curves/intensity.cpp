// Intensity curves: level-band factors, offset gains and cycle counts.
#include "curves/intensity.h"

#include <algorithm>

#include "curves/frequency.h"
#include "curves/pieces.h"
#include "profile/profile.h"

namespace lrasynth {
namespace {

struct FactorBand {
  int32_t from;
  double factor;
};

// The factor falls from 0.8 to 0.7 at level 61.
constexpr FactorBand kFactors1040[] = {{71, 1.0}, {61, 0.7},  {41, 0.8}, {36, 0.5},
                                       {31, 0.3}, {16, 0.25}, {10, 0.2}, {kBelow, 0.1}};

struct CycleBand {
  int32_t from;
  int32_t cycles;
};

constexpr CycleBand kCycles[] = {{71, 4}, {25, 2}, {kBelow, 3}};

// offset^2 / divisor + floor
struct GainCurve {
  double divisor;
  double floor;
};

constexpr GainCurve kGain1040 = {4000, 0.25};
constexpr GainCurve kGain9595 = {3496, 0.16};
constexpr GainCurve kGain0832Boost = {4350, 0.3};
constexpr GainCurve kGain0832 = {7000, 0.6};

// The narrowing to single precision lifts products that fall just short of a whole number: 90 * 0.7 is 63.
int32_t scaled_1040(int32_t level, int32_t intensity) {
  const double scaled = intensity * piece_at<FactorBand>(kFactors1040, level).factor;
  return truncate(static_cast<float>(scaled));
}

float gain_at(const GainCurve& curve, int32_t offset) {
  const int32_t clamped = std::clamp(offset, -kMaxOffset, kMaxOffset);
  const double square = clamped * clamped;
  return static_cast<float>(square / curve.divisor + curve.floor);
}

// Any flag but 0 boosts here, while the motor's frequency curve asks for exactly 1.
const GainCurve& gain_curve_0832() { return giBoostFlg != 0 ? kGain0832Boost : kGain0832; }

}  // namespace

int32_t tap_intensity(int32_t level, int32_t intensity) {
  return giMotorType == kMotor1040 ? scaled_1040(level, intensity) : intensity;
}

float offset_gain(int32_t offset) {
  switch (giMotorType) {
    case kMotor9595:
      return gain_at(kGain9595, offset);
    case kMotor0832:
      return gain_at(gain_curve_0832(), offset);
    default:
      return gain_at(kGain1040, offset);
  }
}

}  // namespace lrasynth

int32_t getIntensity(int32_t level, int32_t intensity) { return lrasynth::tap_intensity(level, intensity); }

int32_t getIntensity_0832(int32_t /*level*/, int32_t intensity) { return intensity; }
int32_t getIntensity_1040(int32_t level, int32_t intensity) { return lrasynth::scaled_1040(level, intensity); }
int32_t getIntensity_9595(int32_t /*level*/, int32_t intensity) { return intensity; }

float getIntensityMax(int32_t offset) { return lrasynth::offset_gain(offset); }
float getIntensityMax_0832(int32_t offset) { return lrasynth::gain_at(lrasynth::gain_curve_0832(), offset); }
float getIntensityMax_1040(int32_t offset) { return lrasynth::gain_at(lrasynth::kGain1040, offset); }
float getIntensityMax_9595(int32_t offset) { return lrasynth::gain_at(lrasynth::kGain9595, offset); }

int32_t getCycle(int32_t level) { return lrasynth::piece_at<lrasynth::CycleBand>(lrasynth::kCycles, level).cycles; }
