// Continuous vibration: a carrier whose frequency runs linearly between the points of a curve, under an envelope of
// quarter-sine ramps.
#include "pattern/continuous.h"

#include <algorithm>
#include <cmath>

#include "curves/frequency.h"
#include "curves/intensity.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"
#include "profile/sample_code.h"
#include "tone/ramp.h"
#include "tone/speculation.h"

namespace lrasynth {
namespace {

struct CurvePoint {
  int32_t frequency_hz;
  float amplitude;  // sample units
};

// Gain times 128 times intensity over 100, single precision, in that order.
CurvePoint curve_point(const Record& event, int32_t point, int32_t base_hz) {
  const int32_t offset = event.point_offset(point);
  const float full = offset_gain(offset) * 128.0F;
  const float scaled = full * static_cast<float>(event.point_intensity(point));
  return {.frequency_hz = offset_frequency_hz(base_hz, offset), .amplitude = scaled / 100.0F};
}

// The stretch between two points. Its phase starts at 0 and is the instantaneous frequency times the time since then,
// not an accumulated sum.
class CurveSegment {
 public:
  CurveSegment(const CurvePoint& from, const CurvePoint& to, int32_t count)
      : period_(sample_period()),
        slope_(frequency_step(from.frequency_hz, to.frequency_hz, count)),
        start_hz_(static_cast<float>(from.frequency_hz)),
        highest_hz_(static_cast<float>(std::max(from.frequency_hz, to.frequency_hz))),
        ramp_(count, from.amplitude, to.amplitude) {}

  bool silent() const { return ramp_.constant() && ramp_.start() == 0.0F; }

  // Both sines and the product of envelope and carrier are double precision, everything else single.
  float exact(int32_t i) const {
    const double envelope = ramp_.exact(sample_time(period_, i));
    const double carrier = std::sin(static_cast<double>(phase(i)));
    return static_cast<float>(carrier * envelope) + kRest;
  }

  void estimate(int32_t first, int32_t n, float* offsets) const {
    if (ramp_.constant()) return estimate_under(first, n, offsets, [this](float) { return ramp_.start(); });
    estimate_under(first, n, offsets, [this](float time) { return ramp_.estimate(time); });
  }

  // Carrier and envelope each err by their sine, and by a few roundings of 2^-24.
  float error(int32_t last) const {
    constexpr float kRelativeError = kFastSineError + 0x1p-22F;
    const float time = std::fabs(sample_time(period_, last));
    if (!(time * highest_hz_ * 6.3F <= kFastSineLimit)) return kUnproven;
    const float amplitude = ramp_.bound(time);
    return offset_error(amplitude, (amplitude + ramp_.range()) * kRelativeError);
  }

 private:
  float phase(int32_t i) const {
    const float frequency_hz = (slope_ * static_cast<float>(i)) + start_hz_;
    return sample_time(period_, i) * (frequency_hz * kTwoPi);
  }

  template <class Envelope>
  void estimate_under(int32_t first, int32_t n, float* offsets, Envelope envelope) const {
    for (int32_t j = 0; j < n; ++j) {
      const float time = sample_time(period_, first + j);
      offsets[j] = fast_sine(phase(first + j)) * envelope(time) + kRest;
    }
  }

  float period_;  // seconds
  float slope_;   // Hz per sample
  float start_hz_;
  float highest_hz_;
  Ramp ramp_;
};

// Draws as much of a segment as falls inside the event.
void draw(const CurveSegment& segment, int64_t offset, int64_t count, uint8_t* out, int64_t length) {
  const int64_t first = std::max<int64_t>(0, -offset);
  const int64_t end = std::min(count, length - offset);
  if (first >= end) return;
  uint8_t* const start = out + (offset + first);
  const auto n = static_cast<int32_t>(end - first);
  if (segment.silent()) {
    std::fill_n(start, n, kRestCode);
    return;
  }
  PlainCoding coding;
  render(segment, coding, static_cast<int32_t>(first), n, start);
}

// Samples from point `from` to point `to`, in 32-bit arithmetic; negative where the points run backwards.
int32_t samples_between(const Record& event, int32_t from, int32_t to) {
  return wrapping_multiply(samples_per_ms(), wrapping_subtract(event.point_ms(to), event.point_ms(from)));
}

}  // namespace

void render_continuous(const Record& event, uint8_t* out, int32_t start) {
  const int32_t length = event.duration_samples();
  if (length <= 0) return;
  const int32_t base_hz = base_frequency_hz();
  out += start;
  std::fill_n(out, length, kRestCode);
  for (int32_t point = 0; point < 3; ++point) {
    const int32_t count = samples_between(event, point, point + 1);
    if (count <= 0) continue;
    const CurveSegment segment(curve_point(event, point, base_hz), curve_point(event, point + 1, base_hz), count);
    draw(segment, samples_between(event, 0, point), count, out, length);
  }
  out[0] = kFirstCode;
}

}  // namespace lrasynth
