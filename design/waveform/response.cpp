// SPDX-License-Identifier: Apache-2.0
// An estimate of how the motor moves.
#include "design/waveform/response.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "design/base/motor.h"
#include "design/base/text.h"

namespace design {

namespace {

// Gain and frequency, as parts of the resonance, at all offsets.
struct GainCurve {
  std::array<double, 101> gain;
  std::array<double, 101> ratio;

  // The variance of gain times acceleration, in dB, with that quality.
  double unevenness(double quality) const {
    double sum = 0;
    double squares = 0;
    for (size_t i = 0; i < gain.size(); ++i) {
      const double db = 20 * std::log10(gain[i] * tone_g({1, quality}, ratio[i]));
      sum += db;
      squares += db * db;
    }
    const auto count = static_cast<double>(gain.size());
    return squares / count - (sum / count) * (sum / count);
  }
};

}  // namespace

double tone_g(const Resonator& resolved, double hz) {
  const double r = hz / resolved.hz;
  return resolved.rated_g * r * r / (resolved.quality * std::hypot(1 - r * r, r / resolved.quality));
}

// The unevenness has one valley.
double quality_of(const lrasynth_profile& profile) {
  GainCurve curve = {};
  for (int32_t offset = -50; offset <= 50; ++offset) {
    const auto i = static_cast<size_t>(offset + 50);
    curve.gain[i] = gain_at(profile, offset);
    curve.ratio[i] = hertz_at(profile, offset) / resonance_of(profile);
  }
  int32_t low = 60;  // hundredths
  int32_t high = 10'000;
  while (low < high) {
    const int32_t middle = low + (high - low) / 2;
    const bool falls = curve.unevenness((middle + 1) / 100.0) < curve.unevenness(middle / 100.0);
    (falls ? low : high) = falls ? middle + 1 : middle;
  }
  return low / 100.0;
}

Resonator resolved(Resonator resonator, const lrasynth_profile& profile) {
  if (resonator.hz == 0) resonator.hz = resonance_of(profile);
  if (resonator.quality == 0) resonator.quality = quality_of(profile);
  return resonator;
}

std::string words_of(const Resonator& resolved) {
  return text("%.4g Hz, Q %.4g, %.4g g rated", resolved.hz, resolved.quality, resolved.rated_g);
}

// With d = 1 / (2 Q), the damped oscillation turns by w sqrt(1 - d^2) a second and decays by w d.
Oscillation::Oscillation(const Resonator& resonator, double sample_rate) {
  const double d = 1.0 / (2.0 * resonator.quality);
  const double undamped = 2.0 * std::numbers::pi * resonator.hz / sample_rate;
  const double damped = undamped * std::sqrt(1.0 - d * d);
  damping_ = d / std::sqrt(1.0 - d * d);
  stiffness_ = 1.0 + damping_ * damping_;
  drag_ = 2.0 * d * std::sqrt(1.0 - d * d);
  decay_ = std::exp(-undamped * d);
  cos_ = std::cos(damped);
  sin_ = std::sin(damped);
}

std::vector<Number> numbers_of(const Response& response, bool is_burst) {
  std::vector<Number> numbers = {{"at", words_of(response.resonator)}};
  if (is_burst) {
    numbers.emplace_back("rise to 90 %", text("%.1f ms", response.rise_ms));
    numbers.emplace_back("ring-down to 10 %", text("%.1f ms", response.ring_down_ms));
  }
  numbers.emplace_back("peak", text("%.1f %%", 100 * response.peak));
  numbers.emplace_back("effective", text("%.1f %%", 100 * response.effective));
  return numbers;
}

Motion::Motion(Waveform waveform, const Resonator& resonator) : waveform_(std::move(waveform)) {
  response_.resonator = resolved(resonator, waveform_.profile);
  unit_ = 1.0 / (kFullScale * response_.resonator.quality);
  Oscillation motor(response_.resonator, waveform_.profile.sample_rate);
  double squares = 0;
  for_blocks(waveform_, [&](int64_t, std::span<const uint8_t> codes) {
    for (const uint8_t code : codes) {
      const double displacement = step(motor, amplitude(code) * unit_);
      squares += displacement * displacement;
    }
    return true;
  });
  double most_energy = 0;
  for (const Block& block : blocks_) most_energy = std::max(most_energy, block.most_energy);
  if (most_energy == 0) return;
  strongest_ = std::sqrt(most_energy);
  while (has(0.1, motor.energy())) step(motor, 0);
  for (const Block& block : blocks_) {
    response_.peak = std::max({response_.peak, -block.extremes.low, block.extremes.high});
  }
  response_.effective = std::sqrt(squares / static_cast<double>(waveform_.length));
  const int64_t last_strong = last_with(0.9);
  const int64_t last_felt = last_with(0.1);
  response_.rise_ms = waveform_.ms_of(first_with(0.9) + 1);
  response_.felt_ms = waveform_.ms_of(last_felt + 1);
  response_.ring_down_ms = waveform_.ms_of(last_felt - last_strong);
}

double Motion::step(Oscillation& motor, double drive) {
  if (length_++ % kBlock == 0) blocks_.push_back({motor});
  Block& block = blocks_.back();
  const double displacement = motor.step(drive);
  block.extremes.add({displacement, displacement});
  block.most_energy = std::max(block.most_energy, motor.energy());
  return displacement;
}

template <class Visit>
void Motion::replay(size_t block, Visit visit) const {
  const int64_t first = static_cast<int64_t>(block) * kBlock;
  std::array<uint8_t, kBlock> codes = {};
  const int64_t driven = std::clamp<int64_t>(waveform_.length - first, 0, kBlock);
  if (driven > 0) waveform_.read(first, std::span(codes).first(static_cast<size_t>(driven)));
  Oscillation motor = blocks_[block].before;
  for (int64_t i = first; i < std::min(first + kBlock, length_); ++i) {
    const double displacement = motor.step(amplitude(codes[static_cast<size_t>(i - first)]) * unit_);
    visit(i, displacement, motor.energy());
  }
}

bool Motion::has(double share, double energy) const { return std::sqrt(energy) / strongest_ >= share; }

int64_t Motion::first_with(double share) const {
  const auto strong = [&](const Block& block) { return has(share, block.most_energy); };
  const auto found = std::find_if(blocks_.begin(), blocks_.end(), strong);
  int64_t first = -1;
  replay(static_cast<size_t>(found - blocks_.begin()), [&](int64_t i, double, double energy) {
    if (first < 0 && has(share, energy)) first = i;
  });
  return first;
}

int64_t Motion::last_with(double share) const {
  const auto strong = [&](const Block& block) { return has(share, block.most_energy); };
  const auto found = std::find_if(blocks_.rbegin(), blocks_.rend(), strong);
  int64_t last = 0;
  replay(static_cast<size_t>(blocks_.rend() - found) - 1, [&](int64_t i, double, double energy) {
    if (has(share, energy)) last = i;
  });
  return last;
}

// A block whose samples all fall into one column need not be replayed.
std::vector<Motion::Extremes> Motion::columns(Span shown, size_t count) const {
  std::vector<Extremes> columns(count);
  const auto column_of = [&](int64_t i) {
    return std::floor((waveform_.ms_of(i) - shown.from) / shown.length() * static_cast<double>(count));
  };
  const auto add = [&](double column, Extremes extremes) {
    if (column >= 0 && column < static_cast<double>(count)) columns[static_cast<size_t>(column)].add(extremes);
  };
  if (!(shown.length() > 0)) return columns;
  for (size_t block = 0; block < blocks_.size(); ++block) {
    const int64_t first = static_cast<int64_t>(block) * kBlock;
    const double from = column_of(first);
    const double to = column_of(std::min(first + kBlock, length_) - 1);
    if (from == to) {
      add(from, blocks_[block].extremes);
    } else if (to >= 0 && from < static_cast<double>(count)) {
      replay(block, [&](int64_t i, double displacement, double) { add(column_of(i), {displacement, displacement}); });
    }
  }
  return columns;
}

}  // namespace design
