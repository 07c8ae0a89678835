// Windows: which samples of a waveform are asked for, and where they go. Everything that is drawn is drawn into one.
#pragma once

#include <algorithm>
#include <cstdint>

namespace lrasynth {

// Samples first .. end - 1 of a waveform; `out` is where sample `first` goes. Nothing where end <= first.
template <class Sample>
struct Window {
  int64_t first;
  int64_t end;
  Sample* out;

  // The part that a piece of `count` samples from `start` on covers, counted from the piece's own start.
  Window of_piece(int64_t start, int64_t count) const {
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

}  // namespace lrasynth
