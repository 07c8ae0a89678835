// SPDX-License-Identifier: Apache-2.0
// The four-segment transient, resolved: its segments in samples, hertz and amplitudes.
#pragma once

#include <cstdint>

#include "profile/profile.h"
#include "tone/sine_segment.h"
#include "tone/window.h"
#include "transient/timing.h"

namespace lrasynth {

class Transient {
 public:
  Transient() = default;  // of no samples
  Transient(Rate rate, const TransientShape& shape);

  // Samples of the whole, as transient_length gives them.
  int32_t length() const { return length_; }

  // Those of the pieces, at most length(). Between the two lies rest: they can differ by a sample at rates other than
  // 24000 and 12000.
  int32_t drawn_length() const;

  // As bytes (uint8_t) or as one coded sample per integer (int32_t).
  template <class Sample>
  void draw(const Window<Sample>& window) const;

 private:
  int32_t length_ = 0;
  SineSegment drive_;
  int32_t zero_count_ = 0;
  SineSegment f1_;
  SineSegment f2_;
  TransientCoding coding_ = TransientCoding::kTruncateFirst;
};

extern template void Transient::draw(const Window<uint8_t>& window) const;

}  // namespace lrasynth
