// The four-segment transient, resolved: its segments in samples, hertz and amplitudes.
#pragma once

#include <cstdint>

#include "profile/profile.h"
#include "tone/sine_segment.h"
#include "tone/window.h"
#include "transient/timing.h"

namespace lrasynth {

// In percent of 255.
struct Amplitudes {
  int32_t drive;
  int32_t f1;
  int32_t f2;
};

// How offset values become codes: coded, then truncated, or truncated first.
enum class TransientCoding { kCodeFirst, kTruncateFirst };

class Transient {
 public:
  Transient(Rate rate, const TransientShape& shape, const Amplitudes& amplitudes, bool f2_mirrored,
            TransientCoding coding);

  // Samples of the whole, as transient_length gives them.
  int32_t length() const { return length_; }

  // Those of the pieces, at most length(). Between the two lies rest: they can differ by a sample at rates other than
  // 24000 and 12000.
  int32_t drawn_length() const;

  // As bytes (uint8_t) or as one coded sample per integer (int32_t). The window lies within 0..length().
  template <class Sample>
  void draw(const Window<Sample>& window) const;

 private:
  int32_t length_;
  SineSegment drive_;
  int32_t zero_count_;
  SineSegment f1_;
  SineSegment f2_;
  TransientCoding coding_;
};

extern template void Transient::draw(const Window<uint8_t>& window) const;
extern template void Transient::draw(const Window<int32_t>& window) const;

// A level's tap in either shape.
Transient mid_transient(Rate rate, int32_t drive_hz, int32_t level, int32_t intensity);
Transient edge_transient(Rate rate, int32_t drive_hz, int32_t level, int32_t intensity);

}  // namespace lrasynth
