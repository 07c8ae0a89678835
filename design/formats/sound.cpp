// SPDX-License-Identifier: Apache-2.0
// Frames become taps, and what they leave becomes curves.
#include "design/formats/sound.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/formats/fewest.h"
#include "design/formats/onsets.h"
#include "design/pattern/event.h"

namespace design {
namespace {

constexpr float kLoudest = 1e6F;  // of which sums of squares are still numbers

constexpr double kBoundDb = 2;

// Codes of the two sides of rest are one step apart, so that vibrations sound that much stronger than they are driven.
constexpr double kCodedApart = 4 / std::numbers::pi / 128;

constexpr size_t kHop = 5;  // frames from passage to passage
// Frames to either side of what an envelope is a mean of: enough of a period that the mean is steady.
constexpr double kReachPeriods = 0.75;
constexpr size_t kLeastReach = 8;
constexpr size_t kMostReach = 32;
constexpr size_t kBrightnessHops = 3;  // to either side of what a brightness is a median of
constexpr size_t kShortestRest = 20;   // frames
constexpr size_t kShortestCurve = 5;
constexpr size_t kTapsRemnant = 25;  // what lasts less behind a tap belongs to it

// Frequencies within a factor of the motor's own are near them.
constexpr double kNear = 1.5;
// What is bright and dull in a sound that is far from them.
constexpr double kDullHz = 60;
constexpr double kBrightHz = 6000;
// How far lines may pass from a frequency that is kept, and from a brightness, in parts of the motor's range.
constexpr double kNearHz = 5;
constexpr double kNearBrightness = 0.06;
// And by how much farther where tones begin and end, within so many frames.
constexpr double kNearAtEdges = 3;
constexpr size_t kEdge = 12;

double factor_of(double db) { return std::pow(10, db / 20); }
double db_of(double factor) { return 20 * std::log10(factor); }

// From octaves above 1 Hz to places on the motor's range.
class Places {
 public:
  Places(const Tuning& tuning, bool keeps_hertz) : tuning_(tuning), keeps_hertz_(keeps_hertz) {}

  bool keeps_hertz() const { return keeps_hertz_; }

  // From 0, dull, to 1, bright.
  static double brightness(double octaves) {
    const double dull = std::log2(kDullHz);
    return std::clamp((octaves - dull) / (std::log2(kBrightHz) - dull), 0.0, 1.0);
  }

  double hertz(double octaves) const {
    if (keeps_hertz_) return std::clamp(std::exp2(octaves), tuning_.hertz(-50), tuning_.hertz(50));
    return tuning_.hertz(static_cast<int32_t>(std::lround(100 * brightness(octaves))) - 50);
  }

  // How far lines may pass from them.
  double near_hertz() const {
    return keeps_hertz_ ? kNearHz : kNearBrightness * (tuning_.hertz(50) - tuning_.hertz(-50));
  }

 private:
  const Tuning& tuning_;
  bool keeps_hertz_;
};

class Sketch {
 public:
  Sketch(const Hearing& hearing, const std::vector<Frame>& frames, const SoundOptions& options,
         const lrasynth_profile& profile)
      : hearing_(hearing),
        frames_(frames),
        floor_(static_cast<float>(factor_of(options.floor_db))),
        tuning_(profile),
        places_(tuning_, keeps_hertz()),
        has_taps_(options.taps && has_taps(profile)),
        states_(frames.size(), kRest) {}

  void draw_taps(const TapSounds& sounds, Drawing& drawing) {
    for (const Onset& onset : onsets_of(hearing_, frames_, floor_)) {
      const int level = places_.keeps_hertz() ? sounds.nearest(onset.octaves)
                                              : static_cast<int>(std::lround(100 * Places::brightness(onset.octaves)));
      const TapSounds::Sound& sound = sounds.at(level);
      const double ms = std::max(static_cast<double>(onset.attack) - sound.attack_ms, 0.0);
      const double strength = std::min(100 * static_cast<double>(onset.peak) / sound.peak, 100.0);
      if (strength < 0.5) continue;
      drawing.taps.push_back({ms, strength, static_cast<double>(level)});
      const auto from = static_cast<size_t>(ms);
      hide(from - std::min<size_t>(from, 1), from + static_cast<size_t>(sound.length_ms) + 3);
    }
  }

  void draw_curves(Drawing& drawing) {
    mark();
    for (size_t from = 0; from < states_.size();) {
      size_t to = from;
      while (to < states_.size() && states_[to] != kRest) ++to;
      if (to - from >= kShortestCurve) draw_curve(from, to, drawing);
      from = to + 1;
    }
    if (short_of_ > 0) {
      drawing.losses.say(text("%s ms of it are louder than the motor plays at their frequency, by %.0f dB at most",
                              grouped(static_cast<int64_t>(short_of_ * kHop)).c_str(),
                              -db_of(static_cast<double>(shortest_))));
    }
  }

 private:
  enum State : uint8_t { kRest, kSounds, kHidden };

  bool is_loud(size_t frame) const { return frames_[frame].peak > floor_; }

  // Whether most of what is heard is near the motor's frequencies.
  bool keeps_hertz() const {
    const double lowest = std::log2(tuning_.hertz(-50) / kNear);
    const double highest = std::log2(tuning_.hertz(50) * kNear);
    size_t near = 0;
    size_t all = 0;
    size_t next = 0;
    for (size_t at = 0; at < frames_.size(); ++at) {
      if (at < next || !is_loud(at)) continue;
      next = at + kHop;
      const double octaves = octaves_at(at, [](size_t) { return true; });
      ++all;
      if (octaves >= lowest && octaves <= highest) ++near;
    }
    return 2 * near > all;
  }

  // Of the frames around one that count.
  template <class Counts>
  double octaves_at(size_t at, Counts counts) const {
    Frame sum;
    for_window(at, kLeastReach, [&](size_t i, float weight) {
      if (counts(i)) sum.add(frames_[i], weight);
    });
    return hearing_.octaves(sum);
  }

  // The frames up to a reach away from one, and how much each weighs.
  template <class Visit>
  void for_window(size_t at, size_t reach, Visit visit) const {
    const size_t last = std::min(at + reach, frames_.size() - 1);
    for (size_t i = at - std::min(at, reach); i <= last; ++i) {
      const float away = static_cast<float>(i < at ? at - i : i - at) / static_cast<float>(reach + 1);
      const float weight = 1 - away * away;
      visit(i, weight * weight);
    }
  }

  void hide(size_t from, size_t to) {
    for (size_t i = from; i < std::min(to, states_.size()); ++i) states_[i] = kHidden;
  }

  // The end of the frames from one on that have its state.
  size_t end_of(size_t from) const {
    size_t end = from;
    while (end < states_.size() && states_[end] == states_[from]) ++end;
    return end;
  }

  void set(size_t from, size_t to, State state) {
    std::fill(states_.begin() + static_cast<ptrdiff_t>(from), states_.begin() + static_cast<ptrdiff_t>(to), state);
  }

  // Which frames sound, and which taps hide.
  void mark() {
    for (size_t i = 0; i < states_.size(); ++i) {
      if (states_[i] == kRest && is_loud(i)) states_[i] = kSounds;
    }
    close_rests();
    if (!has_taps_) lengthen_clicks();
    for (size_t from = 0, to; from < states_.size(); from = to) {
      to = end_of(from);
      if (states_[from] == kHidden) settle(from, to);
    }
  }

  // Rests that are too short for one.
  void close_rests() {
    for (size_t from = 0, to; from < states_.size(); from = to) {
      to = end_of(from);
      const bool is_inside = from > 0 && states_[from - 1] == kSounds && to < states_.size() && states_[to] == kSounds;
      if (states_[from] == kRest && is_inside && to - from < kShortestRest) set(from, to, kSounds);
    }
  }

  // What is too short for a curve, where there are no taps for it.
  void lengthen_clicks() {
    for (size_t from = 0, to; from < states_.size(); from = to) {
      to = end_of(from);
      if (states_[from] == kRest || to - from >= kShortestCurve) continue;
      set(from, to = std::min(from + kShortestCurve, states_.size()), kSounds);
    }
  }

  // What a tap hides goes on below it where there is something on both sides, and is rest elsewhere.
  void settle(size_t from, size_t& to) {
    const bool sounded = from > 0 && states_[from - 1] == kSounds;
    const size_t rest_end = to < states_.size() && states_[to] == kRest ? end_of(to) : to;
    const size_t next_end = rest_end < states_.size() && states_[rest_end] == kSounds ? end_of(rest_end) : rest_end;
    const bool goes_on = next_end - rest_end >= kShortestCurve && rest_end - to < kShortestRest;
    if (sounded && goes_on) {
      set(to, rest_end, kHidden);
      to = rest_end;
      return;
    }
    if (rest_end - to < kShortestRest && next_end - rest_end < kTapsRemnant) set(rest_end, next_end, kRest);
    set(from, to, kRest);
  }

  void draw_curve(size_t from, size_t to, Drawing& drawing) {
    std::vector<size_t> at;
    for (size_t i = from; i < to; i += kHop) at.push_back(i);
    if (at.back() + 1 < to) at.push_back(to - 1);
    std::erase_if(at, [this](size_t i) { return states_[i] == kHidden; });
    std::vector<Passage> passages;
    const std::vector<double> octaves = octaves_at(at);
    for (size_t i = 0; i < at.size(); ++i) passages.push_back(passage(at[i], octaves[i]));
    passages.back().ms = static_cast<int32_t>(to);
    if (passages.size() < 2) return;
    FittedCurve fitted = fewest_points(passages, tuning_);
    drawing.curves.push_back(std::move(fitted.curve));
    short_of_ += fitted.short_of;
    shortest_ = std::min(shortest_, fitted.shortest);
  }

  // Medians over a few passages: where a carrier starts anew it has no frequency.
  std::vector<double> octaves_at(const std::vector<size_t>& at) const {
    std::vector<double> octaves;
    octaves.reserve(at.size());
    for (const size_t i : at) {
      octaves.push_back(octaves_at(i, [this](size_t frame) { return states_[frame] == kSounds; }));
    }
    std::vector<double> medians;
    for (size_t i = 0; i < octaves.size(); ++i) {
      const size_t last = std::min(i + kBrightnessHops, octaves.size() - 1);
      std::vector<double> near(&octaves[i - std::min(i, kBrightnessHops)], &octaves[last] + 1);
      const auto middle = near.begin() + static_cast<ptrdiff_t>(near.size() / 2);
      std::nth_element(near.begin(), middle, near.end());
      medians.push_back(*middle);
    }
    return medians;
  }

  // Whether something begins or ends around a frame, so that its frequency is not sure.
  bool near_edge(size_t at) const {
    if (at < kEdge || at + kEdge >= states_.size()) return true;
    return std::any_of(&states_[at - kEdge], &states_[at + kEdge], [](State state) { return state != kSounds; });
  }

  Passage passage(size_t at, double octaves) const {
    float power = 0;
    float weights = 0;
    const double periods = kReachPeriods * 1000 / std::exp2(octaves);
    for_window(at, std::clamp(static_cast<size_t>(periods), kLeastReach, kMostReach), [&](size_t i, float weight) {
      if (states_[i] != kSounds) return;
      power += weight * frames_[i].power;
      weights += weight;
    });
    const double amplitude = std::sqrt(2 * static_cast<double>(power / weights));
    const double bound = factor_of(kBoundDb);
    const bool is_faint = amplitude < bound * static_cast<double>(floor_);
    const auto driven = [](double heard) { return static_cast<float>(std::max(heard - kCodedApart, 0.0)); };
    return {static_cast<int32_t>(at),
            driven(amplitude),
            is_faint ? 0 : driven(amplitude / bound),
            driven(amplitude * bound),
            static_cast<float>(places_.hertz(octaves)),
            static_cast<float>(near_edge(at) ? kNearAtEdges * places_.near_hertz() : places_.near_hertz())};
  }

  const Hearing& hearing_;
  const std::vector<Frame>& frames_;
  float floor_;
  Tuning tuning_;
  Places places_;
  bool has_taps_;
  std::vector<State> states_;
  size_t short_of_ = 0;
  float shortest_ = 1;
};

}  // namespace

Listener::Listener(double rate, const SoundOptions& options)
    : rate_(rate),
      options_(options),
      first_(0),
      end_(std::numeric_limits<int64_t>::max()),
      gain_(static_cast<float>(factor_of(options.gain_db))),
      hearing_(rate >= kLeastSoundRate && rate <= kMostSoundRate ? rate : kLeastSoundRate) {
  if (!(rate >= kLeastSoundRate && rate <= kMostSoundRate)) {
    fault(text("has %.10g samples a second: %.0f to %.0f can be heard", rate, kLeastSoundRate, kMostSoundRate));
    return;
  }
  first_ = static_cast<int64_t>(std::ceil(options.from_ms * rate / 1000));
  if (options.to_ms > 0) end_ = static_cast<int64_t>(std::ceil(options.to_ms * rate / 1000));
}

void Listener::fault(std::string what) {
  if (drawing_.faults.count == 0) drawing_.fault({}, std::move(what));
}

void Listener::hear(std::span<const float> samples) {
  if (!wants_more()) return;
  const auto count = static_cast<int64_t>(samples.size());
  const int64_t from = std::clamp(first_ - heard_, int64_t{0}, count);
  const int64_t to = std::clamp(end_ - heard_, from, count);
  std::vector<float> louder;
  louder.reserve(static_cast<size_t>(to - from));
  for (int64_t i = from; i < to; ++i) {
    const float sample = samples[static_cast<size_t>(i)];
    if (!std::isfinite(sample)) {
      const double ms = static_cast<double>(heard_ + i) * 1000 / rate_;
      return fault(text("has a sample that is no number, at %s ms", ms_text(ms).c_str()));
    }
    louder.push_back(std::clamp(sample * gain_, -kLoudest, kLoudest));
  }
  heard_ += count;
  if (static_cast<double>(std::min(heard_, end_)) > kLongestMs * rate_ / 1000) {
    return fault(text("lasts longer than %d ms", kLongestMs));
  }
  hearing_.hear(louder);
}

Drawing Listener::drawing(const lrasynth_profile& profile) {
  if (drawing_.faults.count > 0) return std::move(drawing_);
  const std::vector<Frame>& frames = hearing_.finish();
  float peak = 0;
  for (const Frame& frame : frames) peak = std::max(peak, frame.peak);
  if (static_cast<double>(peak) <= factor_of(options_.floor_db)) {
    if (peak > 0) {
      drawing_.losses.say(text("its loudest moment has %.1f dB, below the floor of %.1f",
                               db_of(static_cast<double>(peak)), options_.floor_db));
    }
    return std::move(drawing_);
  }
  Sketch sketch(hearing_, frames, options_, profile);
  if (options_.taps && !has_taps(profile)) drawing_.losses.say(tap_fault(profile) + ": onsets are left out");
  if (options_.taps && has_taps(profile)) sketch.draw_taps(TapSounds(profile), drawing_);
  if (options_.curves) sketch.draw_curves(drawing_);
  return std::move(drawing_);
}

}  // namespace design
