// SPDX-License-Identifier: Apache-2.0
// An estimate of how the motor moves.
#include "design/response.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "design/motor.h"

namespace design {
namespace {

// Visits every sample with the displacement after it and the envelope: those of the waveform, then the ring-down as
// long as on(envelope) says.
template <class Visit, class On>
void swing(const Waveform& waveform, const Resonator& resonator, Visit visit, On on) {
  Oscillation motor(resonator, waveform.profile.sample_rate);
  const double unit = 1.0 / (kFullScale * resonator.quality);
  for_blocks(waveform, [&](int64_t first, std::span<const uint8_t> codes) {
    for (size_t i = 0; i < codes.size(); ++i) {
      const double displacement = motor.step(amplitude(codes[i]) * unit);
      visit(first + static_cast<int64_t>(i), displacement, motor.envelope());
    }
  });
  for (int64_t i = waveform.length; on(motor.envelope()); ++i) {
    const double displacement = motor.step(0);
    visit(i, displacement, motor.envelope());
  }
}

}  // namespace

// With d = 1 / (2 Q), the damped oscillation turns by w sqrt(1 - d^2) a second and decays by w d.
Oscillation::Oscillation(const Resonator& resonator, double sample_rate) {
  const double d = 1.0 / (2.0 * resonator.quality);
  const double undamped = 2.0 * std::numbers::pi * resonator.hz / sample_rate;
  const double damped = undamped * std::sqrt(1.0 - d * d);
  damping_ = d / std::sqrt(1.0 - d * d);
  stiffness_ = 1.0 + damping_ * damping_;
  decay_ = std::exp(-undamped * d);
  cos_ = std::cos(damped);
  sin_ = std::sin(damped);
}

double Oscillation::envelope() const {
  const double turned = damping_ * displacement_ + velocity_;
  return std::sqrt(displacement_ * displacement_ + turned * turned);
}

Response response_of(const Waveform& waveform, Resonator resonator, Span shown, size_t columns) {
  if (resonator.hz == 0) resonator.hz = resonance_of(waveform.profile);
  Response response;
  response.resonator = resonator;
  double squares = 0;
  double strongest = 0;
  const auto measure = [&](int64_t i, double displacement, double envelope) {
    response.peak = std::max(response.peak, std::fabs(displacement));
    strongest = std::max(strongest, envelope);
    if (i < waveform.length) squares += displacement * displacement;
  };
  const auto swings_on = [&](double envelope) { return strongest > 0 && envelope >= 0.1 * strongest; };
  swing(waveform, resonator, measure, swings_on);
  if (response.peak == 0) return response;
  response.effective = std::sqrt(squares / static_cast<double>(waveform.length));

  int64_t first_strong = -1;
  int64_t last_strong = 0;
  int64_t last_felt = 0;
  response.columns.assign(columns, {1, -1});
  const auto place = [&](int64_t i, double displacement, double envelope) {
    const double share = envelope / strongest;
    if (share >= 0.9 && first_strong < 0) first_strong = i;
    if (share >= 0.9) last_strong = i;
    if (share >= 0.1) last_felt = i;
    const double column = (waveform.ms_of(i) - shown.from) / shown.length() * static_cast<double>(columns);
    if (!(column >= 0) || column >= static_cast<double>(columns)) return;
    Response::Extremes& extremes = response.columns[static_cast<size_t>(column)];
    extremes = {std::min(extremes.low, displacement), std::max(extremes.high, displacement)};
  };
  swing(waveform, resonator, place, swings_on);
  response.rise_ms = waveform.ms_of(first_strong + 1);
  response.felt_ms = waveform.ms_of(last_felt + 1);
  response.ring_down_ms = waveform.ms_of(last_felt - last_strong);
  return response;
}

Span felt_span(const Waveform& waveform, const Resonator& resonator) {
  return {0, std::max(waveform.length_ms(), response_of(waveform, resonator).felt_ms)};
}

}  // namespace design
