// SPDX-License-Identifier: Apache-2.0
// Half-band filters in a row, and what is measured between them.
#include "design/formats/hearing.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace design {
namespace {

constexpr double kBeyondHearing = 80'000;  // of such rates the upper half band is not heard
constexpr double kLastRate = 4'000;        // stages end below it
constexpr double kOffsetHz = 10;           // below which a sound is taken for an offset

// Of a low-pass at a quarter of the rate: half of the middle sample, and these of those 1, 3, 5 and 7 away from it.
constexpr float kHalfBand[] = {0.30526F, -0.07313F, 0.01959F, -0.00172F};
constexpr size_t kReach = 7;

constexpr size_t kBlock = 4096;

}  // namespace

double BandPower::hertz(double rate) const {
  const double ratio = energy > 0 ? static_cast<double>(change) / (4 * static_cast<double>(energy)) : 0;
  return rate / std::numbers::pi * std::asin(std::sqrt(std::min(ratio, 1.0)));
}

void Frame::add(const Frame& other, float weight) {
  low.energy += weight * other.low.energy;
  low.change += weight * other.low.change;
  mid.energy += weight * other.mid.energy;
  mid.change += weight * other.mid.change;
  high += weight * other.high;
  high_octaves += weight * other.high_octaves;
}

size_t Hearing::Clock::left(size_t most) const {
  return std::min(most, static_cast<size_t>(std::max<int64_t>(end_ - passed_, 0)));
}

bool Hearing::Clock::pass(size_t count) {
  passed_ += static_cast<int64_t>(count);
  if (passed_ < end_) return false;
  end_ = end_of(++frame_);
  return true;
}

int64_t Hearing::Clock::end_of(size_t frame) const {
  return static_cast<int64_t>(std::ceil(static_cast<double>(frame + 1) * rate_ / 1000 + delay_));
}

Hearing::Stage::Stage(Kind stage_kind, double stage_rate, double delay_ms)
    : kind(stage_kind), rate(stage_rate), clock(stage_rate, delay_ms), samples(2 * kReach) {}

Hearing::Hearing(double rate) : rate_(rate), whole_rate_(rate), whole_(rate, 0) {
  double delay = 0;
  for (;; rate /= 2) {
    const Stage::Kind kind = rate >= kBeyondHearing ? Stage::kUnheard
                             : rate >= kLastRate    ? Stage::kOctave
                                                    : Stage::kLast;
    if (kind != Stage::kUnheard && (stages_.empty() || stages_.back().kind == Stage::kUnheard)) {
      whole_rate_ = rate;
      whole_ = Clock(rate, delay);
    }
    delay += 1000 * kReach / rate;
    stages_.emplace_back(kind, rate, delay);
    if (kind == Stage::kLast) break;
  }
}

void Hearing::hear(std::span<const float> samples) {
  heard_ += static_cast<int64_t>(samples.size());
  const auto follows = static_cast<float>(2 * std::numbers::pi * kOffsetHz / rate_);
  for (; !samples.empty(); samples = samples.subspan(std::min(kBlock, samples.size()))) {
    block_.clear();
    for (const float sample : samples.first(std::min(kBlock, samples.size()))) {
      rest_ += (sample - rest_) * follows;
      block_.push_back(sample - rest_);
    }
    hear_block(block_);
  }
}

void Hearing::hear_block(std::span<const float> samples) {
  bool is_whole = false;
  for (size_t i = 0; i < stages_.size(); ++i) {
    Stage& stage = stages_[i];
    if (i == 0) stage.samples.insert(stage.samples.end(), samples.begin(), samples.end());
    if (stage.kind != Stage::kUnheard && !is_whole) {
      is_whole = true;
      hear_whole(std::span(stage.samples).subspan(2 * kReach));
    }
    split(stage);
    if (stage.kind != Stage::kUnheard) measure(stage);
    if (stage.kind != Stage::kLast) halve(stage, stages_[i + 1].samples);
  }
}

void Hearing::hear_whole(std::span<const float> samples) {
  while (!samples.empty()) {
    const size_t count = whole_.left(samples.size());
    for (const float sample : samples.first(count)) {
      whole_peak_ = std::max(whole_peak_, std::fabs(sample));
      whole_power_ += sample * sample;
    }
    samples = samples.subspan(count);
    const size_t index = whole_.frame();
    if (!whole_.pass(count)) return;
    Frame& frame = this->frame(index);
    frame.peak = whole_peak_;
    frame.power = whole_power_ * static_cast<float>(1000 / whole_rate_);
    whole_peak_ = whole_power_ = 0;
  }
}

void Hearing::split(Stage& stage) {
  const size_t count = stage.samples.size() - 2 * kReach;
  stage.low.resize(count);
  stage.high.resize(count);
  const float* const x = stage.samples.data();
  for (size_t i = 0; i < count; ++i) {
    float low = 0.5F * x[i + kReach];
    for (size_t k = 0; k < std::size(kHalfBand); ++k) {
      low += kHalfBand[k] * (x[i + kReach - 1 - 2 * k] + x[i + kReach + 1 + 2 * k]);
    }
    stage.low[i] = low;
    stage.high[i] = x[i + kReach] - low;
  }
  stage.samples.erase(stage.samples.begin(), stage.samples.begin() + static_cast<ptrdiff_t>(count));
}

void Hearing::measure(Stage& stage) {
  const auto add = [](BandPower& sum, float& before, float sample) {
    const float change = sample - before;
    sum.energy += sample * sample;
    sum.change += change * change;
    before = sample;
  };
  const auto share = static_cast<float>(1000 / stage.rate);
  for (size_t at = 0; at < stage.high.size();) {
    const size_t count = stage.clock.left(stage.high.size() - at);
    for (size_t i = at; i < at + count; ++i) {
      add(stage.high_sum, stage.before_high, stage.high[i]);
      if (stage.kind == Stage::kLast) add(stage.low_sum, stage.before_low, stage.low[i]);
    }
    at += count;
    const size_t index = stage.clock.frame();
    if (!stage.clock.pass(count)) return;
    Frame& frame = this->frame(index);
    const BandPower high = {stage.high_sum.energy * share, stage.high_sum.change * share};
    if (stage.kind == Stage::kLast) {
      frame.mid = high;
      frame.low = {stage.low_sum.energy * share, stage.low_sum.change * share};
    } else if (const double hertz = high.hertz(stage.rate); hertz > 1) {
      frame.high += high.energy;
      frame.high_octaves += high.energy * static_cast<float>(std::log2(hertz));
    }
    stage.low_sum = stage.high_sum = {};
  }
}

void Hearing::halve(Stage& stage, std::vector<float>& into) {
  size_t i = stage.skipped;
  for (; i < stage.low.size(); i += 2) into.push_back(stage.low[i]);
  stage.skipped = i - stage.low.size();
}

Frame& Hearing::frame(size_t index) {
  if (index >= frames_.size()) frames_.resize(index + 1);
  return frames_[index];
}

const std::vector<Frame>& Hearing::finish() {
  const auto count = static_cast<size_t>(std::ceil(static_cast<double>(heard_) * 1000 / rate_));
  // What the stages still hold back, and the rest of the last millisecond.
  constexpr double kRestMs = 20;
  block_.assign(static_cast<size_t>(kRestMs * rate_ / 1000) + 1, 0);
  hear_block(block_);
  frames_.resize(count);
  return frames_;
}

double Hearing::octaves(const Frame& sum) const {
  const double rate = stages_.back().rate;
  auto energy = static_cast<double>(sum.high);
  auto octaves = static_cast<double>(sum.high_octaves);
  for (const BandPower& band : {sum.low, sum.mid}) {
    const double hertz = band.hertz(rate);
    if (hertz <= 1) continue;
    energy += static_cast<double>(band.energy);
    octaves += static_cast<double>(band.energy) * std::log2(hertz);
  }
  return energy > 0 ? octaves / energy : 0;
}

}  // namespace design
