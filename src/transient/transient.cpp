// SPDX-License-Identifier: Apache-2.0
// Resolving and drawing the four-segment transient.
#include "transient/transient.h"

#include <algorithm>

#include "profile/arithmetic.h"
#include "profile/sample_code.h"
#include "tone/speculation.h"

namespace lrasynth {
namespace {

// Mid level: the float is coded, then narrowed.
struct MidCoding : PlainCoding {
  static int32_t code(float offset_value) { return narrow(code_offset(offset_value)); }
};

// Edge level: narrowed first, then coded. A code of 128 right after a 127 becomes 127 as well, so that a rising peak
// does not tip over into the sign bit. No segment begins with a 128: it starts at rest.
struct EdgeCoding {
  static constexpr float kLastLow = 129.0F;
  static constexpr float kRounding = 0.0F;
  static int32_t code(float offset_value) { return code_truncated_offset(narrow(offset_value)); }

  // Past a run of 128 to the code that decides what becomes of it.
  void begin(const SampleSource auto& source, int32_t first) {
    for (int32_t i = first - 1; i > 0; --i) {
      previous = code(source.exact(i));
      if (previous != 128) return;
    }
  }

  void settle(int32_t* codes, int32_t n) {
    for (int32_t j = 0; j < n; ++j) {
      if (codes[j] == 128 && previous == 127) codes[j] = 127;
      previous = codes[j];
    }
  }

  int32_t previous = 0;
};

float in_samples(Rate rate, float ms) {
  const float product = rate.single() * ms;
  return product / 1000.0F;
}

}  // namespace

int32_t zero_count(Rate rate, float zero_ms) { return truncate(in_samples(rate, zero_ms)); }

// The segments are truncated one by one, the zero time by itself where it is drawn, but in the length only together
// with their sum, which is single precision.
Transient::Transient(Rate rate, const TransientShape& shape)
    : drive_(rate, shape.drive.hz, shape.drive.cycles, shape.drive.amplitude),
      f1_(rate, shape.f1.hz, shape.f1.cycles, shape.f1.amplitude),
      f2_(rate, shape.f2.hz, shape.f2.cycles, shape.f2.amplitude, shape.f2_mirrored),
      code_first_(shape.code_first) {
  const float zero_samples = in_samples(rate, shape.zero_ms);
  zero_count_ = truncate(zero_samples);
  const int64_t segments = int64_t{drive_.count()} + f1_.count() + f2_.count();
  length_ = shape.drive.hz > 0 ? truncate(zero_samples + static_cast<float>(segments)) : 0;
}

int32_t Transient::drawn_length() const {
  int64_t sum = 0;
  for (const int32_t count : {drive_.count(), zero_count_, f1_.count(), f2_.count()}) sum += std::max(0, count);
  return static_cast<int32_t>(std::min<int64_t>(sum, length_));
}

template <class Sample>
void Transient::draw(const Window<Sample>& window) const {
  const Window<Sample> inside = window.of_piece(0, length_);
  if (inside.empty()) return;
  fill(inside, Sample{kRestCode});
  code_first_ ? draw_segments<MidCoding>(inside) : draw_segments<EdgeCoding>(inside);
  if (inside.first == 0) inside.out[0] = kFirstCode;
}

template <class Coding, class Sample>
void Transient::draw_segments(const Window<Sample>& window) const {
  int64_t at = 0;
  const auto draw_next = [&](const SineSegment& segment) {
    if (!segment.silent()) render<Coding>(segment, window.of_piece(at, segment.count()));
    at += std::max(0, segment.count());
  };
  draw_next(drive_);
  at += std::max(0, zero_count_);
  draw_next(f1_);
  draw_next(f2_);
}

template void Transient::draw(const Window<uint8_t>& window) const;
template void Transient::draw(const Window<int32_t>& window) const;

}  // namespace lrasynth
