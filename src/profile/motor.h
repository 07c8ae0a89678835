// SPDX-License-Identifier: Apache-2.0
// What differs between motor models: one row each.
#pragma once

#include <cassert>
#include <cstdint>
#include <limits>
#include <span>

namespace lrasynth {

// `from` of a table's last row, which serves everything below the others.
constexpr int32_t kBelow = std::numeric_limits<int32_t>::min();

// The row that serves x: the first whose `from` is not above it. Tables run downward and end with kBelow.
template <class Row>
constexpr const Row& row_at(std::span<const Row> rows, int32_t x) {
  assert(!rows.empty() && rows.back().from == kBelow);
  const Row* row = rows.data();
  while (x < row->from) ++row;
  return *row;
}

// Drive frequency of a level: (level - 50) * slope + intercept_hz.
struct LevelPiece {
  int32_t from;
  double slope;
  double intercept_hz;
};

// Frequency at an offset around a base: (slope * offset + lift_hz) + base. Without a slope it is the base itself.
struct OffsetPiece {
  int32_t from;
  double slope = 0;
  double lift_hz = 0;
};

// Gain at an offset: offset^2 / divisor + floor.
struct GainCurve {
  double divisor;
  double floor;
};

// Share of the intensity at which a tap is driven inside a pattern.
struct ShareBand {
  int32_t from;
  double share;
};

enum class TapKind { kNone, kFourSegments, kStoredBurst };

struct Motor {
  int32_t code;
  int32_t base_hz;  // the resonant frequency
  std::span<const LevelPiece> levels;
  std::span<const OffsetPiece> offsets;          // without boost
  std::span<const OffsetPiece> boosted_offsets;  // where the boost flag is 1; none: the same
  GainCurve gain;                                // without boost
  GainCurve boosted_gain;                        // where the boost flag is not 0
  std::span<const ShareBand> shares;             // none: all of the intensity
  TapKind tap_kind;
};

constexpr bool has_boost(const Motor& motor) { return !motor.boosted_offsets.empty(); }

// The row of a motor code; codes that no row names share the one of every other model.
const Motor& motor_of(int32_t code);

}  // namespace lrasynth
