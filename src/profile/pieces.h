// Functions in pieces: tables of rows, each of which serves an argument from its `from` on.
#pragma once

#include <cstdint>
#include <limits>
#include <span>

namespace lrasynth {

// `from` of a table's last row, which serves everything below the others.
constexpr int32_t kBelow = std::numeric_limits<int32_t>::min();

// The row that serves x: the first whose `from` is not above it. Tables run downward and end with kBelow.
template <class Row>
constexpr const Row& row_at(std::span<const Row> rows, int32_t x) {
  const Row* row = rows.data();
  while (x < row->from) ++row;
  return *row;
}

}  // namespace lrasynth
