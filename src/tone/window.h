// SPDX-License-Identifier: Apache-2.0
// Windows: which samples of a waveform are asked for, and where they go. Everything that is drawn is drawn into one.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>

#include "lrasynth.h"
#include "profile/arithmetic.h"

namespace lrasynth {

// Samples first .. end - 1 of a waveform; `out` is where sample `first` goes. Nothing where end <= first.
template <class Sample>
struct Window {
  int64_t first;
  int64_t end;
  Sample* out;

  // The part that a piece of `count` samples from `start` on covers, counted from the piece's own start.
  Window of_piece(int64_t start, int64_t count) const {
    assert(first >= 0);
    const int64_t from = std::max(first, start);
    const int64_t to = std::min(end, start + count);
    if (from >= to) return {0, 0, out};
    return {from - start, to - start, out + (from - first)};
  }

  bool empty() const { return end <= first; }
};

template <class Sample>
void fill(const Window<Sample>& window, Sample value) {
  if (!window.empty()) std::fill_n(window.out, window.end - window.first, value);
}

// Writes the whole of something that has a length and draws itself. Returns the status of an export.
template <class Whole>
int32_t write(const Whole& whole, uint8_t* out) {
  if (refuses(out, whole.length())) return -1;
  whole.draw(Window<uint8_t>{0, whole.length(), out});
  return 0;
}

// Writes the window's part of a whole that has a length and draws itself, with 0 where it draws nothing. Returns how
// many samples that are, or why it is none.
template <class Whole>
int64_t read(const Whole& whole, int64_t first, uint8_t* out, int64_t count) {
  if (first < 0 || count < 0) return LRASYNTH_ERROR_NEGATIVE_WINDOW;
  const int64_t n = std::min(count, std::max<int64_t>(0, whole.length() - first));
  if (n == 0) return 0;
  if (out == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  std::fill_n(out, n, uint8_t{0});
  whole.draw(Window<uint8_t>{first, first + n, out});
  return n;
}

}  // namespace lrasynth
