// SPDX-License-Identifier: Apache-2.0
// An estimate of what a finger feels.
#include "design/waveform/felt.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "design/base/motor.h"
#include "design/base/text.h"

namespace design {
namespace {

constexpr double kBinHz = 25;
constexpr double kBlocksPerSecond = 200;

// Published thresholds of vibrations that a hand feels, in dB re 1 g. Straight between them, and level beyond the ends.
constexpr struct {
  double hz;
  double db;
} kThresholds[] = {
    {30, -34.31},     {35, -33.13},    {40, -32.81},   {50, -31.94},     {60, -31.77},  {70, -31.59},
    {72, -31.55},     {80, -31.77},    {86.4, -31.94}, {90, -31.73},     {100, -31.90}, {103.68, -31.77},
    {124.42, -31.70}, {149.3, -31.38}, {150, -31.35},  {179.16, -31.02}, {200, -30.86}, {215, -30.35},
    {250, -28.98},    {258, -28.68},   {300, -26.81},  {400, -19.81},
};

}  // namespace

double threshold_db(double hz) {
  const auto* const above = std::find_if(std::begin(kThresholds), std::end(kThresholds),
                                         [&](const auto& threshold) { return threshold.hz >= hz; });
  if (above == std::begin(kThresholds)) return above->db;
  const auto* const below = above - 1;
  if (above == std::end(kThresholds)) return below->db;
  return below->db + (above->db - below->db) * (hz - below->hz) / (above->hz - below->hz);
}

double tone_level(double g, double hz) { return g > 0 ? std::max(0.0, 20 * std::log10(g) - threshold_db(hz)) : 0; }

std::string level_words(double level) { return text("%.1f dB SL, %.0f %%", level, percent_felt(level)); }

// A tone of amplitude 1 on a bin has half the samples of a frame there; under the window half of that, and a quarter in
// both neighbours, squares that add up to 3/8 of it.
FeltMeter::FeltMeter(const Resonator& resolved, int32_t sample_rate)
    : motor_(resolved, sample_rate),
      unit_(resolved.rated_g / resolved.quality),
      samples_(static_cast<size_t>(sample_rate / kBlocksPerSecond)),
      waves_(samples_ / 2) {
  const auto frame = static_cast<double>(samples_ * kBlocks);
  const double middle = static_cast<double>(samples_ - 1) / 2;
  const auto set = [&](Spectrum& spectrum, size_t bin, double samples) {
    const double angle = 2 * std::numbers::pi * static_cast<double>(bin) * samples / frame;
    spectrum.real[bin] = std::cos(angle);
    spectrum.imaginary[bin] = -std::sin(angle);
  };
  for (size_t bin = 0; bin < kSums; ++bin) {
    for (size_t i = 0; i < waves_.size(); ++i) set(waves_[i], bin, static_cast<double>(i) - middle);
    for (size_t i = 0; i < kBlocks; ++i) set(turns_[i], bin, static_cast<double>(i * samples_) + middle);
  }
  for (size_t bin = 1; bin <= kBins; ++bin) {
    const double threshold = std::pow(10, threshold_db(kBinHz * static_cast<double>(bin)) / 20);
    const double amplitude_one = frame / 2 * threshold;
    weights_[bin] = 8.0 / 3.0 / (amplitude_one * amplitude_one);
  }
  block_.reserve(samples_);
}

void FeltMeter::drive(double drive) {
  motor_.step(drive * unit_);
  block_.push_back(motor_.acceleration(drive * unit_));
  ++length_;
  if (block_.size() == samples_) add_block();
}

// About the middle of a block cosines are even and sines odd, so that half of them serve for all of its samples.
void FeltMeter::add_block() {
  Spectrum& sums = blocks_[next_];
  sums = {};
  next_ = (next_ + 1) % kBlocks;
  for (size_t i = 0; i < waves_.size(); ++i) {
    const double even = block_[i] + block_[samples_ - 1 - i];
    const double odd = block_[i] - block_[samples_ - 1 - i];
    for (size_t bin = 0; bin < kSums; ++bin) {
      sums.real[bin] += even * waves_[i].real[bin];
      sums.imaginary[bin] += odd * waves_[i].imaginary[bin];
    }
  }
  block_.clear();
  // The first frame has its middle, and before that half a frame of rest, where the drive begins.
  if (++count_ >= kBlocks / 2) levels_.push_back(level());
}

double FeltMeter::level() const {
  Spectrum frame = {};
  for (size_t i = 0; i < kBlocks; ++i) {
    const Spectrum& block = blocks_[(next_ + i) % kBlocks];
    const Spectrum& turn = turns_[i];
    for (size_t bin = 0; bin < kSums; ++bin) {
      frame.real[bin] += block.real[bin] * turn.real[bin] - block.imaginary[bin] * turn.imaginary[bin];
      frame.imaginary[bin] += block.real[bin] * turn.imaginary[bin] + block.imaginary[bin] * turn.real[bin];
    }
  }
  const auto windowed = [](const std::array<double, kSums>& part, size_t bin) {
    return part[bin] / 2 - (part[bin - 1] + part[bin + 1]) / 4;
  };
  double sum = 0;
  for (size_t bin = 1; bin <= kBins; ++bin) {
    const double real = windowed(frame.real, bin);
    const double imaginary = windowed(frame.imaginary, bin);
    sum += weights_[bin] * (real * real + imaginary * imaginary);
  }
  return sum > 1 ? 10 * std::log10(sum) : 0;
}

std::vector<double> FeltMeter::finish() {
  const size_t frames = static_cast<size_t>(length_) / samples_ + kBlocks + 1;
  while (levels_.size() < frames) drive(0);
  return std::move(levels_);
}

Felt::Felt(const Waveform& waveform, const Resonator& resonator) : resonator_(resolved(resonator, waveform.profile)) {
  FeltMeter meter(resonator_, waveform.profile.sample_rate);
  for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    for (const uint8_t code : codes) meter.drive(amplitude(code) / kFullScale);
    return true;
  });
  levels_ = meter.finish();
  for (size_t i = 0; i < levels_.size(); i += kGroup) {
    const auto group = std::span(levels_).subspan(i, std::min(kGroup, levels_.size() - i));
    strongest_.push_back(*std::max_element(group.begin(), group.end()));
  }
}

double Felt::strongest(Span span) const {
  const auto frame = [&](double number) {
    return static_cast<size_t>(std::clamp(number, 0.0, static_cast<double>(levels_.size())));
  };
  const size_t end = frame(std::floor(span.to / kFrameStepMs) + 1);
  double most = 0;
  for (size_t i = frame(std::ceil(span.from / kFrameStepMs)); i < end;) {
    const bool is_whole = i % kGroup == 0 && i + kGroup <= end;
    most = std::max(most, is_whole ? strongest_[i / kGroup] : levels_[i]);
    i += is_whole ? kGroup : 1;
  }
  return most;
}

double Felt::level_at(double ms) const {
  const double place = std::clamp(ms / kFrameStepMs, 0.0, static_cast<double>(levels_.size() - 1));
  const auto before = static_cast<size_t>(place);
  const double share = place - static_cast<double>(before);
  return share == 0 ? levels_[before] : levels_[before] + share * (levels_[before + 1] - levels_[before]);
}

std::vector<double> Felt::columns(Span shown, size_t count) const {
  const double last_ms = kFrameStepMs * static_cast<double>(levels_.size() - 1);
  const double wide = shown.length() / static_cast<double>(count);
  std::vector<double> columns(count);
  for (size_t i = 0; i < count; ++i) {
    const double from = shown.from + static_cast<double>(i) * wide;
    const Span part = {std::max(0.0, from), std::min(last_ms, from + wide)};
    if (part.from <= part.to) columns[i] = std::max({strongest(part), level_at(part.from), level_at(part.to)});
  }
  return columns;
}

double Felt::felt_ms() const {
  const auto is_felt = [](double level) { return level > 0; };
  return kFrameStepMs * static_cast<double>(std::count_if(levels_.begin(), levels_.end(), is_felt));
}

std::vector<Number> numbers_of(const Felt& felt) {
  return {{"strongest felt", level_words(felt.strongest())}, {"felt length", text("%.0f ms", felt.felt_ms())}};
}

void write_felt_csv(const Felt& felt, const Sink& sink) {
  constexpr size_t kRows = 1000;  // at a time
  std::string rows = "ms,db_sl,percent\n";
  for (size_t i = 0; i < felt.levels().size(); ++i) {
    const double level = felt.levels()[i];
    rows += text("%.0f,%.2f,%.1f\n", kFrameStepMs * static_cast<double>(i), level, percent_felt(level));
    if ((i + 1) % kRows != 0) continue;
    if (!sink(rows)) return;
    rows.clear();
  }
  sink(rows);
}

}  // namespace design
