// Continuous vibration: a carrier whose frequency runs linearly between the points of a curve, under an envelope of
// quarter-sine ramps.
#include "pattern/continuous.h"

#include <algorithm>

#include "curves/frequency.h"
#include "curves/intensity.h"
#include "lrasynth.h"
#include "pattern/curve_segment.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"
#include "profile/sample_code.h"
#include "tone/speculation.h"

namespace lrasynth {
namespace {

// Gain times 128 times intensity over 100, single precision, in that order.
CurvePoint curve_point(const Record& event, int32_t point, int32_t base_hz) {
  const int32_t offset = event.point_offset(point);
  const float full = offset_gain(offset) * 128.0F;
  const float scaled = full * static_cast<float>(event.point_intensity(point));
  return {.frequency_hz = offset_frequency_hz(base_hz, offset), .amplitude = scaled / 100.0F};
}

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
