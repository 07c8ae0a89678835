// SPDX-License-Identifier: Apache-2.0
// The carrier and the envelope of a continuous vibration.
#include "design/waveform/stretch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "design/base/motor.h"

namespace design {

double Stretch::amplitude_at(double ms) const {
  const double turned = std::sin(share_at(ms) * quarters * std::numbers::pi / 2);
  return from_amplitude + (to_amplitude - from_amplitude) * turned;
}

namespace {

void add_stretches(const lrasynth_profile& profile, const CurvePart& part, std::vector<Stretch>& stretches) {
  constexpr double kRateOfQuarters = 24000;
  const auto amplitude_of = [&](const lrasynth_point& point) {
    return gain_at(profile, point.offset) * 128 * point.intensity / 100;
  };
  const Vibration& vibration = part.vibration;
  for (size_t to = 1; to < vibration.points.size(); ++to) {
    const lrasynth_point& from_point = vibration.points[to - 1];
    const lrasynth_point& to_point = vibration.points[to];
    const Span whole = {static_cast<double>(vibration.point_ms(to - 1)), static_cast<double>(vibration.point_ms(to))};
    const Span played = {whole.from, std::min<double>(whole.to, vibration.duration_ms)};
    if (played.length() <= 0) continue;
    stretches.push_back({.to_point = to,
                         .span = played.moved(part.since_ms),
                         .length_ms = whole.length(),
                         .from_hz = static_cast<double>(hertz_at(profile, from_point.offset)),
                         .to_hz = static_cast<double>(hertz_at(profile, to_point.offset)),
                         .from_amplitude = amplitude_of(from_point),
                         .to_amplitude = amplitude_of(to_point),
                         .quarters = kRateOfQuarters / profile.sample_rate});
  }
}

}  // namespace

std::vector<Stretch> stretches_of(const lrasynth_profile& profile, const Event& event) {
  std::vector<Stretch> stretches;
  for (const CurvePart& part : event.parts()) add_stretches(profile, part, stretches);
  return stretches;
}

std::vector<Asked> line_of(const lrasynth_profile& profile, const Event& event) {
  std::vector<Asked> line;
  const auto add = [&](const auto& points) {
    for (const auto& point : points) {
      line.push_back({static_cast<double>(point.ms - points[0].ms), static_cast<double>(point.intensity),
                      static_cast<double>(hertz_at(profile, point.offset)),
                      gain_at(profile, point.offset) * 128 * point.intensity / 100});
    }
  };
  if (event.curve() != nullptr) add(event.curve()->played());
  if (event.vibration() != nullptr && !event.vibration()->is_record) add(event.vibration()->points);
  return line;
}

}  // namespace design
