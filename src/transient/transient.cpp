// SPDX-License-Identifier: Apache-2.0
// Drawing the four-segment transient, and the exports that draw it as integers.
#include "transient/transient.h"

#include <algorithm>

#include "curves/curves.h"
#include "lrasynth.h"
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

// Draws pieces one after another, as far as they fall into the window.
template <class Coding, class Sample>
class Pen {
 public:
  explicit Pen(const Window<Sample>& window) : window_(window) {}

  void draw(const SineSegment& segment) {
    if (segment.silent()) return rest(segment.count());
    render<Coding>(segment, next(segment.count()));
  }

  void rest(int32_t count) { fill(next(count), Sample{kRestCode}); }

 private:
  Window<Sample> next(int32_t count) {
    const Window<Sample> piece = window_.of_piece(at_, count);
    at_ += std::max(0, count);
    return piece;
  }

  Window<Sample> window_;
  int64_t at_ = 0;
};

// For the entry points that write integers.
int32_t write_integers(const Transient& transient, int32_t* out) {
  if (refuses(out, transient.length())) return -1;
  transient.draw(Window<int32_t>{0, transient.drawn_length(), out});
  return 0;
}

}  // namespace

Transient::Transient(Rate rate, const TransientShape& shape)
    : length_(transient_length(rate, shape)),
      drive_(rate, shape.drive.hz, shape.drive.cycles, shape.drive.amplitude),
      zero_count_(truncate(zero_samples(rate, shape.zero_ms))),
      f1_(rate, shape.f1.hz, shape.f1.cycles, shape.f1.amplitude),
      f2_(rate, shape.f2.hz, shape.f2.cycles, shape.f2.amplitude, shape.f2_mirrored),
      coding_(shape.coding) {}

int32_t Transient::drawn_length() const {
  int64_t sum = 0;
  for (const int32_t count : {drive_.count(), zero_count_, f1_.count(), f2_.count()}) sum += std::max(0, count);
  return static_cast<int32_t>(std::min<int64_t>(sum, length_));
}

template <class Sample>
void Transient::draw(const Window<Sample>& window) const {
  const Window<Sample> inside = window.of_piece(0, length_);
  const auto draw_with = [this](auto pen) {
    pen.draw(drive_);
    pen.rest(zero_count_);
    pen.draw(f1_);
    pen.draw(f2_);
    pen.rest(length_);
  };
  if (inside.empty()) return;
  coding_ == TransientCoding::kCodeFirst ? draw_with(Pen<MidCoding, Sample>(inside))
                                         : draw_with(Pen<EdgeCoding, Sample>(inside));
  if (inside.first == 0) inside.out[0] = kFirstCode;
}

template void Transient::draw(const Window<uint8_t>& window) const;

}  // namespace lrasynth

using namespace lrasynth;

int32_t wave_func(int32_t level, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2, int32_t* out,
                  float zeroTimeMs) {
  const Profile profile = current_profile();
  const int32_t drive_hz = level_hz(profile, level);
  return write_integers({profile.rate, custom_mid_shape(drive_hz, f1Hz, f2Hz, zeroTimeMs, intensity, a1, a2)}, out);
}

int32_t wave_func_custom(int32_t frequencyHz, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2,
                         int32_t reverse, int32_t* out, float c0, float c1, float c2, float zeroTimeMs) {
  const TransientShape shape = {{frequencyHz, c0, intensity}, zeroTimeMs, {f1Hz, c1, a1}, {f2Hz, c2, a2}, reverse == 1};
  return write_integers({current_profile().rate, shape}, out);
}
