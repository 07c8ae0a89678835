// SPDX-License-Identifier: Apache-2.0
// The frequency of a continuous vibration over time.
#include "design/carrier.h"

#include "design/motor.h"

namespace design {

std::vector<Sweep> sweeps_of(const lrasynth_profile& profile, const Event& event) {
  std::vector<Sweep> sweeps;
  for (size_t to = 1; to < event.points.size(); ++to) {
    const Span span = {static_cast<double>(event.point_ms(to - 1)), static_cast<double>(event.point_ms(to))};
    if (span.length() <= 0) continue;
    sweeps.push_back({.to_point = to,
                      .span = span,
                      .from_hz = static_cast<double>(hertz_at(profile, event.points[to - 1].offset)),
                      .to_hz = static_cast<double>(hertz_at(profile, event.points[to].offset))});
  }
  return sweeps;
}

}  // namespace design
