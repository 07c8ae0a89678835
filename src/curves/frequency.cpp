// Frequency curves, piecewise linear and hand-tuned per motor model.
#include "curves/frequency.h"

#include <algorithm>

#include "curves/pieces.h"
#include "profile/profile.h"

namespace lrasynth {
namespace {

// (level - 50) * slope + intercept_hz
struct LevelPiece {
  int32_t from;
  double slope;
  double intercept_hz;
};

constexpr LevelPiece kLevels1040[] = {{71, 4.5, 170}, {50, 2.6, 170}, {40, 1.4, 160}, {kBelow, 1.4, 150}};
constexpr LevelPiece kLevels9595[] = {{50, 3.0, 170}, {40, 1.4, 160}, {kBelow, 1.4, 150}};
constexpr LevelPiece kLevels0832[] = {{50, 1.3, 235}, {kBelow, 0.7, 235}};
constexpr LevelPiece kLevels081540[] = {{50, 4.4, 130}, {kBelow, 1.0, 130}};

// (slope * offset + lift_hz) + base
struct OffsetPiece {
  int32_t from;
  double slope;
  double lift_hz;
};

// The slope drops from 1.8 to 1.6 at -40 without an intercept, so that -40 gives a higher frequency than -39.
constexpr OffsetPiece kOffsets1040[] = {{1, 2.2, 30}, {-39, 1.8, 0}, {kBelow, 1.6, 0}};
constexpr OffsetPiece kOffsets9595[] = {{kBelow, 1.4, 0}};  // up to 0; above it is integer arithmetic
constexpr OffsetPiece kOffsets0832Boost[] = {{1, 1.3, 0}, {kBelow, 0.7, 0}};
constexpr OffsetPiece kOffsets0832[] = {{kBelow, 0.3, 0}};
constexpr OffsetPiece kOffsets081540[] = {{0, 4.4, 0}, {kBelow, 1.0, 0}};

// Slope first, then the intercept, both in double precision; the value is single from the narrowing on.
int32_t on_levels(std::span<const LevelPiece> pieces, int32_t level) {
  const LevelPiece& piece = piece_at(pieces, level);
  const double rise = wrapping_subtract(level, 50) * piece.slope;
  return narrow(static_cast<float>(rise + piece.intercept_hz));
}

int32_t on_offsets(std::span<const OffsetPiece> pieces, int32_t base_hz, int32_t offset) {
  const OffsetPiece& piece = piece_at(pieces, offset);
  const double shift = piece.slope * offset + piece.lift_hz;
  return narrow(static_cast<float>(shift + base_hz));
}

// Most curves hand the base back at offset 0, exactly even where it does not fit single precision.
int32_t around_base(std::span<const OffsetPiece> pieces, int32_t base_hz, int32_t offset) {
  return offset == 0 ? base_hz : on_offsets(pieces, base_hz, offset);
}

int32_t offsets_0832(int32_t base_hz, int32_t offset) {
  if (giBoostFlg == 1) return around_base(kOffsets0832Boost, base_hz, offset);
  return on_offsets(kOffsets0832, base_hz, offset);
}

int32_t offsets_9595(int32_t base_hz, int32_t offset) {
  if (offset <= 0) return around_base(kOffsets9595, base_hz, offset);
  const int32_t shift = wrapping_add(wrapping_multiply(2, offset), 30);
  return narrow(static_cast<float>(wrapping_add(base_hz, shift)));
}

}  // namespace

int32_t level_frequency_hz(int32_t level) {
  const int32_t clamped = std::clamp(level, kMinLevel, kMaxLevel);
  switch (giMotorType) {
    case kMotor1040:
      return on_levels(kLevels1040, clamped);
    case kMotor9595:
      return on_levels(kLevels9595, clamped);
    case kMotor0832:
      return on_levels(kLevels0832, clamped);
    case kMotor081540:
      return on_levels(kLevels081540, clamped);
    default:
      return clamped;
  }
}

int32_t offset_frequency_hz(int32_t base_hz, int32_t offset) {
  const int32_t clamped = std::clamp(offset, -kMaxOffset, kMaxOffset);
  switch (giMotorType) {
    case kMotor1040:
      return around_base(kOffsets1040, base_hz, clamped);
    case kMotor9595:
      return offsets_9595(base_hz, clamped);
    case kMotor0832:
      return offsets_0832(base_hz, clamped);
    case kMotor081540:
      return on_offsets(kOffsets081540, base_hz, clamped);
    default:
      return base_hz;
  }
}

float frequency_step(int32_t from_hz, int32_t to_hz, int32_t step_count) {
  if (from_hz == to_hz || step_count == 0) return 0.0F;
  const float difference = static_cast<float>(to_hz) - static_cast<float>(from_hz);
  return difference / static_cast<float>(step_count);
}

}  // namespace lrasynth

int32_t getFrequency(int32_t level) { return lrasynth::level_frequency_hz(level); }

int32_t getFrequency_0832_ShortData(int32_t level) { return lrasynth::on_levels(lrasynth::kLevels0832, level); }
int32_t getFrequency_1040_ShortData(int32_t level) { return lrasynth::on_levels(lrasynth::kLevels1040, level); }
int32_t getFrequency_9595_ShortData(int32_t level) { return lrasynth::on_levels(lrasynth::kLevels9595, level); }
int32_t getFrequency_0815_ShortData(int32_t level) { return lrasynth::on_levels(lrasynth::kLevels081540, level); }

int32_t getFrequency_4096(int32_t baseHz, int32_t offset) { return lrasynth::offset_frequency_hz(baseHz, offset); }

int32_t getFrequency_0832(int32_t baseHz, int32_t offset) { return lrasynth::offsets_0832(baseHz, offset); }

int32_t getFrequency_1040(int32_t baseHz, int32_t offset) {
  return lrasynth::around_base(lrasynth::kOffsets1040, baseHz, offset);
}

int32_t getFrequency_9595(int32_t baseHz, int32_t offset) { return lrasynth::offsets_9595(baseHz, offset); }

int32_t getFrequency_081540(int32_t baseHz, int32_t offset) {
  return lrasynth::on_offsets(lrasynth::kOffsets081540, baseHz, offset);
}

float getFrequencyStepValue(int32_t fromHz, int32_t toHz, int32_t stepCount) {
  return lrasynth::frequency_step(fromHz, toHz, stepCount);
}
