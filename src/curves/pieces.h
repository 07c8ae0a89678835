// Curves in pieces: data tables searched by one helper, and the narrowing that the curves share.
#pragma once

#include <cstdint>
#include <limits>
#include <span>

#include "profile/arithmetic.h"

namespace lrasynth {

// `from` of a table's last piece, which serves everything below the others.
constexpr int32_t kBelow = std::numeric_limits<int32_t>::min();

// The piece that serves x: the first whose `from` is not above it. Tables run downward and end with kBelow.
template <class Piece>
constexpr const Piece& piece_at(std::span<const Piece> pieces, int32_t x) {
  const Piece* piece = pieces.data();
  while (x < piece->from) ++piece;
  return *piece;
}

// "Times ten, over ten, truncate": both operations in single precision and neither left out. They keep no decimal
// place, they can only move a value by one unit in its last place before it is truncated. Below kNarrowLimit in
// magnitude none is moved across a whole number, so that truncation alone gives the same.
constexpr float kNarrowLimit = 2097152.0F;

constexpr int32_t narrow(float value) {
  const float tenfold = value * 10.0F;
  return truncate(tenfold / 10.0F);
}

}  // namespace lrasynth
