// SPDX-License-Identifier: Apache-2.0
// Resolving and drawing a continuous vibration.
#include "pattern/vibration.h"

#include <algorithm>

#include "curves/curves.h"
#include "profile/arithmetic.h"
#include "profile/sample_code.h"
#include "tone/speculation.h"

namespace lrasynth {
namespace {

// Gain times 128 times intensity over 100, single precision, in that order.
float amplitude_of(float gain, int32_t intensity) {
  const float full = gain * 128.0F;
  const float scaled = full * static_cast<float>(intensity);
  return scaled / 100.0F;
}

}  // namespace

// Points are timed in samples from the first one, 32-bit.
Vibration vibration_of(const Profile& profile, const Record& record) {
  Vibration vibration = {profile.rate, profile.rate.samples(record.duration_ms), {}};
  for (int32_t i = 0; i < kPoints; ++i) {
    const lrasynth_point& point = record.points[i];
    vibration.points[i] = {.at = profile.rate.samples(wrap(int64_t{point.ms} - record.points[0].ms)),
                           .frequency_hz = offset_hz(profile, profile.motor.base_hz, point.offset),
                           .amplitude = amplitude_of(gain_at(profile, point.offset), point.intensity)};
  }
  return vibration;
}

// Segments are drawn as far as they fall inside the event, rest where none does.
void Vibration::draw(const Window<uint8_t>& window) const {
  const Window<uint8_t> inside = window.of_piece(0, length);
  int64_t covered = 0;
  const auto rest_up_to = [&](int64_t end) { fill(inside.of_piece(covered, end - covered), kRestCode); };
  for (const CurvePoint* from = points; from != points + kPoints - 1; ++from) {
    const int32_t count = wrap(int64_t{from[1].at} - from[0].at);
    if (count < 1) continue;
    rest_up_to(from->at);
    covered = std::max(covered, int64_t{from->at} + count);
    const CurveSegment segment(rate, from[0], from[1], count);
    const Window<uint8_t> part = inside.of_piece(from->at, count);
    segment.silent() ? fill(part, kRestCode) : render<PlainCoding>(segment, part);
  }
  rest_up_to(length);
  if (!inside.empty() && inside.first == 0) inside.out[0] = kFirstCode;
}

}  // namespace lrasynth
