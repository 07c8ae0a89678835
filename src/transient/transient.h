// SPDX-License-Identifier: Apache-2.0
// The four-segment transient: its shape, and what that is in samples, hertz and amplitudes at a rate.
#pragma once

#include <cstdint>

#include "profile/profile.h"
#include "tone/sine.h"
#include "tone/window.h"

namespace lrasynth {

struct SegmentShape {
  int32_t hz;
  float cycles;
  int32_t amplitude = 0;  // percent of 255
};

// In time order.
struct TransientShape {
  SegmentShape drive;
  float zero_ms;
  SegmentShape f1;
  SegmentShape f2;
  bool f2_mirrored = false;
  bool code_first = false;  // offset values are coded, then truncated; else truncated, then coded
};

class Transient {
 public:
  Transient() = default;  // of no samples
  Transient(Rate rate, const TransientShape& shape);

  // Samples of the whole, negative where cycles or times are; 0 without a positive drive frequency.
  int32_t length() const { return length_; }

  // Those of the pieces, at most length(). Between the two lies rest: they can differ by a sample at rates other than
  // 24000 and 12000.
  int32_t drawn_length() const;

  // As bytes (uint8_t) or as one coded sample per integer (int32_t).
  template <class Sample>
  void draw(const Window<Sample>& window) const;

 private:
  template <class Coding, class Sample>
  void draw_segments(const Window<Sample>& window) const;

  int32_t length_ = 0;
  SineSegment drive_;
  int32_t zero_count_ = 0;
  SineSegment f1_;
  SineSegment f2_;
  bool code_first_ = false;
};

// Samples of the zero time. In the whole's length it is truncated with the rest, not by itself.
int32_t zero_count(Rate rate, float zero_ms);

// What a level's four segments are: drive, zero time, F1 and F2.
void tell_segments(const Profile& profile, int32_t level, lrasynth_segment* segments);

// The transient of a level, at the drive frequency of the profile's motor.
Transient level_transient(const Profile& profile, int32_t level, int32_t intensity);

// Samples that no level's transient outlasts. Of all levels 0 lasts longest, 31.75 ms: 1.5 cycles at 80 Hz, 3 ms of
// rest, a cycle at 200 Hz and half a one at 100 Hz.
constexpr int64_t longest_transient(Rate rate) { return int64_t{rate.hz} / 25; }

}  // namespace lrasynth
