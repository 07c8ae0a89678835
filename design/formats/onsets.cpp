// SPDX-License-Identifier: Apache-2.0
// Peaks that stand out of what is before and behind them.
#include "design/formats/onsets.h"

#include <algorithm>
#include <cmath>

#include "design/base/length.h"

namespace design {
namespace {

// Half a period of the lowest tones that count, within which they have a peak.
constexpr size_t kHalfPeriod = 7;

// By how much a tap stands out of what comes before it, as a peak and as power, and of what comes after.
constexpr float kRise = 1.6F;
constexpr float kPowerRise = 2;
constexpr float kFall = 0.7F;
// Within which it does so.
constexpr size_t kRiseFrames = 7;
constexpr size_t kFallFrames = 50;
// What a tap has covered is back in that time, perhaps stronger, and is nothing new.
constexpr size_t kCovered = 55;
constexpr float kReturn = 2.5F;

constexpr float kMost = 0.75F;  // of a peak

class Frames {
 public:
  explicit Frames(std::span<const Frame> frames) : frames_(frames) {}

  // Of the frames from..to - 1, as far as there are such.
  float peak(size_t from, size_t to) const {
    float peak = 0;
    for (size_t i = from; i < std::min(to, frames_.size()); ++i) peak = std::max(peak, frames_[i].peak);
    return peak;
  }
  float power(size_t from, size_t to) const {
    float sum = 0;
    to = std::min(to, frames_.size());
    for (size_t i = from; i < to; ++i) sum += frames_[i].power;
    return from < to ? sum / static_cast<float>(to - from) : 0;
  }
  // The least peak of any stretch that is long enough to have one.
  float least_peak(size_t from, size_t to) const {
    float least = peak(from, from + 2 * kHalfPeriod - 2);
    for (size_t i = from; i < to; ++i) least = std::min(least, peak(i, i + 2 * kHalfPeriod - 2));
    return least;
  }

 private:
  std::span<const Frame> frames_;
};

constexpr size_t before(size_t frame, size_t count) { return frame - std::min(frame, count); }

// The first frame of an onset that has most of its peak, which lies in a frame or behind it.
size_t attack_of(std::span<const Frame> frames, size_t at, float peak) {
  size_t attack = before(at, kHalfPeriod);
  while (frames[attack].peak < kMost * peak) ++attack;
  return attack;
}

double octaves_from(const Hearing& hearing, std::span<const Frame> frames, size_t attack) {
  Frame sum;
  for (size_t i = before(attack, 3); i < std::min(attack + 10, frames.size()); ++i) sum.add(frames[i], 1);
  return hearing.octaves(sum);
}

}  // namespace

std::vector<Onset> onsets_of(const Hearing& hearing, std::span<const Frame> frames, float floor) {
  const Frames around(frames);
  std::vector<Onset> onsets;
  float covered = 0;  // what there was before the last onset
  for (size_t i = 0; i < frames.size(); ++i) {
    const float peak = frames[i].peak;
    const float largest = around.peak(i, i + 2 * kHalfPeriod);
    if (peak <= floor || peak < kMost * largest) continue;
    const size_t rise = before(i, kRiseFrames);
    const size_t early = before(rise, 2 * kHalfPeriod);
    const float level = around.peak(early, rise);
    const size_t since_last = onsets.empty() ? kCovered : i - onsets.back().attack;
    if (peak < kRise * std::max(level, floor) || (since_last < kCovered && peak < kReturn * covered)) continue;
    // Of two that are too close to one another the second is taken where it stands out of the first.
    const bool is_close = since_last < kLeastBetweenTaps;
    if (is_close && largest < kRise * onsets.back().peak) continue;
    if (around.power(before(i, 2), i + 4) < kPowerRise * around.power(early, rise)) continue;
    if (around.least_peak(i + kHalfPeriod, i + kFallFrames) > kFall * largest) continue;
    if (is_close) onsets.pop_back();
    if (!is_close) covered = level;
    const size_t attack = attack_of(frames, i, largest);
    onsets.push_back({attack, largest, octaves_from(hearing, frames, attack)});
  }
  return onsets;
}

TapSounds::TapSounds(const lrasynth_profile& profile) {
  for (int level = 0; level <= 100; ++level) {
    const int64_t length = tap_length(profile, level).samples;
    std::vector<uint8_t> codes(static_cast<size_t>(length));
    lrasynth_tap_read(&profile, level, 100, 0, codes.data(), length);
    std::vector<float> samples;
    samples.reserve(codes.size());
    for (const uint8_t code : codes) samples.push_back(static_cast<float>(static_cast<int8_t>(code)) / 128);
    Hearing hearing(profile.sample_rate);
    hearing.hear(samples);
    const std::vector<Frame>& frames = hearing.finish();
    Sound sound = {1000.0 * static_cast<double>(length) / profile.sample_rate};
    if (!frames.empty()) {
      const float peak = Frames(frames).peak(0, frames.size());
      const size_t attack = attack_of(frames, 0, peak);
      sound.attack_ms = static_cast<double>(attack);
      sound.peak = static_cast<double>(peak);
      sound.octaves = octaves_from(hearing, frames, attack);
    }
    sounds_.push_back(sound);
  }
}

int TapSounds::nearest(double octaves) const {
  int best = 0;
  for (int level = 1; level <= 100; ++level) {
    if (std::fabs(at(level).octaves - octaves) < std::fabs(at(best).octaves - octaves)) best = level;
  }
  return best;
}

}  // namespace design
