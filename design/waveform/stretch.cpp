// SPDX-License-Identifier: Apache-2.0
// The carrier and the envelope of a continuous vibration.
#include "design/waveform/stretch.h"

#include <cmath>
#include <numbers>

#include "design/base/motor.h"

namespace design {

double Stretch::amplitude_at(double ms) const {
  const double turned = std::sin(share_at(ms) * quarters * std::numbers::pi / 2);
  return from_amplitude + (to_amplitude - from_amplitude) * turned;
}

std::vector<Stretch> stretches_of(const lrasynth_profile& profile, const Vibration& vibration) {
  constexpr double kRateOfQuarters = 24000;
  const auto amplitude_of = [&](const lrasynth_point& point) {
    return gain_at(profile, point.offset) * 128 * point.intensity / 100;
  };
  std::vector<Stretch> stretches;
  for (size_t to = 1; to < vibration.points.size(); ++to) {
    const lrasynth_point& from_point = vibration.points[to - 1];
    const lrasynth_point& to_point = vibration.points[to];
    const Span span = {static_cast<double>(vibration.point_ms(to - 1)), static_cast<double>(vibration.point_ms(to))};
    if (span.length() <= 0) continue;
    stretches.push_back({.to_point = to,
                         .span = span,
                         .from_hz = static_cast<double>(hertz_at(profile, from_point.offset)),
                         .to_hz = static_cast<double>(hertz_at(profile, to_point.offset)),
                         .from_amplitude = amplitude_of(from_point),
                         .to_amplitude = amplitude_of(to_point),
                         .quarters = kRateOfQuarters / profile.sample_rate});
  }
  return stretches;
}

}  // namespace design
