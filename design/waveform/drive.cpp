// SPDX-License-Identifier: Apache-2.0
// From felt strength to drive.
#include "design/waveform/drive.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "design/base/motor.h"
#include "design/waveform/felt.h"

namespace design {
namespace {

constexpr double kMissed = 0.5;  // dB, that are told

// The sides of rest are coded a step apart: a square wave under every tone, of which this is the amplitude.
constexpr double kCodedStep = 1.2;

double level_of(int32_t percent) { return kFullyFelt * percent / 100; }

class Driver {
 public:
  // Of a chip that plays events by itself the samples are unknown: another one's serve.
  Driver(const lrasynth_profile& profile, const Resonator& resonator)
      : profile_(is_event_stream(profile) ? lrasynth_profile_of(0, profile.motor_type, profile.boost_flag) : profile),
        tuning_(profile_),
        resonator_(resolved(resonator, profile_)) {}

  void drive(Event& event) {
    event_ = &event;
    if (auto* const tap = std::get_if<Tap>(&event.kind); tap != nullptr && tap->is_felt()) drive(*tap);
    if (auto* const curve = std::get_if<Curve>(&event.kind); curve != nullptr && curve->is_felt) drive(*curve);
  }

  void ask_as_felt(Event& event) {
    if (auto* const tap = std::get_if<Tap>(&event.kind); tap != nullptr && !tap->is_felt()) ask_as_felt(*tap);
    if (auto* const curve = std::get_if<Curve>(&event.kind); curve != nullptr && !curve->is_felt) ask_as_felt(*curve);
  }

  std::vector<Unreached> unreached;
  int64_t kept = 0;  // to 100 %

 private:
  // What is felt of a strength, in whole percent.
  int32_t percent_of(double level) {
    const auto percent = static_cast<int32_t>(std::lround(percent_felt(level)));
    kept += percent > 100 ? 1 : 0;
    return std::min(100, percent);
  }

  void ask_as_felt(Tap& tap) {
    const int32_t driven = tap.driven_on(profile_);
    tap.felt = percent_of(driven == 0 ? 0 : tap_level(tap.level, std::min(100, driven)));
    tap.driven = Tap::kAsAsked;
  }

  // On the line that plays.
  struct Played {
    double ms;
    double amplitude;
    double hz;

    Played towards(const Played& to, double share) const {
      return {ms + share * (to.ms - ms), amplitude + share * (to.amplitude - amplitude), hz + share * (to.hz - hz)};
    }
  };

  void ask_as_felt(Curve& curve) {
    std::vector<CurvePoint> felt;
    Played before = {};
    for (const CurvePoint& point : curve.points) {
      const Played place = {1.0 * point.ms, tuning_.full(point.offset) * point.intensity / 100,
                            tuning_.hertz(point.offset)};
      if (&point != curve.points.data()) lead_felt(before, place, kDeepest, felt);
      felt.push_back(point);
      felt.back().intensity = percent_of(level_at(place.amplitude, place.hz));
      before = place;
    }
    curve.points = std::move(felt);
    curve.is_felt = true;
  }

  void lead_felt(const Played& from, const Played& to, int depth, std::vector<CurvePoint>& line) {
    if (depth == 0 || to.ms - from.ms < 2 * kLeastMs || is_near(from, to)) return;
    const Played middle = from.towards(to, std::floor((to.ms - from.ms) / 2) / (to.ms - from.ms));
    lead_felt(from, middle, depth - 1, line);
    const int32_t percent = percent_of(level_at(middle.amplitude, middle.hz));
    line.push_back({static_cast<int32_t>(middle.ms), percent, tuning_.nearest(middle.hz)});
    lead_felt(middle, to, depth - 1, line);
  }

  bool is_near(const Played& from, const Played& to) const {
    const double begin = level_at(from.amplitude, from.hz);
    const double end = level_at(to.amplitude, to.hz);
    for (int step = 1; step < kSteps; ++step) {
      const double share = static_cast<double>(step) / kSteps;
      const Played place = from.towards(to, share);
      if (std::fabs(level_at(place.amplitude, place.hz) - (begin + share * (end - begin))) > kNear) return false;
    }
    return true;
  }

  void miss(double at_ms, size_t point, int32_t asked, double level) {
    if (level >= level_of(asked) - kMissed) return;
    unreached.push_back({event_->name, event_->start_ms + at_ms, point, asked, percent_felt(level)});
  }

  // The least strength that reaches the level, or the one below where that is nearer.
  void drive(Tap& tap) {
    if (!has_taps(profile_)) return;  // a fault that is told elsewhere
    const double wanted = level_of(tap.felt);
    int32_t least = 0;
    for (int32_t most = tap.felt == 0 ? 0 : 100; least < most;) {
      const int32_t middle = (least + most) / 2;
      tap_level(tap.level, middle) < wanted ? least = middle + 1 : most = middle;
    }
    const bool is_below = least > 1 && wanted - tap_level(tap.level, least - 1) < tap_level(tap.level, least) - wanted;
    tap.driven = least - (is_below ? 1 : 0);
    miss(0, 0, tap.felt, tap_level(tap.level, tap.driven));
  }

  double tap_level(int32_t level, int32_t strength) {
    const auto [known, is_new] = levels_.emplace(std::pair(level, strength), 0);
    if (is_new) known->second = Felt(tap_waveform(profile_, level, strength), resonator_).strongest();
    return known->second;
  }

  // On the line that is asked for.
  struct Place {
    double ms;
    double felt;  // percent
    double hz;

    Place towards(const Place& to, double share) const {
      return {ms + share * (to.ms - ms), felt + share * (to.felt - felt), hz + share * (to.hz - hz)};
    }
  };

  void drive(Curve& curve) {
    curve.driven.clear();
    Place before = {};
    for (size_t i = 0; i < curve.points.size(); ++i) {
      CurvePoint& point = curve.points[i];
      if (point.asked_hz > 0) point.offset = tuning_.nearest(point.asked_hz);
      const Place place = {static_cast<double>(point.ms), static_cast<double>(point.intensity),
                           tuning_.hertz(point.offset)};
      if (i > 0) lead(before, place, kDeepest, curve.driven);
      curve.driven.push_back(driven(place));
      if (point.intensity > 0) miss(curve.point_ms(i), i + 1, point.intensity, most_level(place));
      before = place;
    }
  }

  double level_at(double amplitude, double hz) const {
    if (amplitude <= 0) return 0;
    return tone_level((amplitude + kCodedStep) / kFullScale * tone_g(resonator_, hz), hz);
  }

  double full_at(double hz) const { return tuning_.full(tuning_.nearest(hz)); }

  // What is felt of what is asked for there.
  double most_level(const Place& place) const {
    return std::min(kFullyFelt * place.felt / 100, level_at(full_at(place.hz), place.hz));
  }

  double amplitude_at(const Place& place) const {
    if (place.felt <= 0) return 0;
    const double g = std::pow(10, (kFullyFelt * place.felt / 100 + threshold_db(place.hz)) / 20);
    return std::clamp(g / tone_g(resonator_, place.hz) * kFullScale - kCodedStep, 0.0, full_at(place.hz));
  }

  CurvePoint driven(const Place& place) const {
    const double percent = 100 * amplitude_at(place) / full_at(place.hz);
    return {static_cast<int32_t>(std::lround(place.ms)), static_cast<int32_t>(std::lround(percent)),
            tuning_.nearest(place.hz)};
  }

  // The points between two, in halves of halves, until lines of amplitudes are near.
  void lead(const Place& from, const Place& to, int depth, std::vector<CurvePoint>& line) const {
    if (depth == 0 || to.ms - from.ms < 2 * kLeastMs || is_near(from, to)) return;
    const Place middle = from.towards(to, std::floor((to.ms - from.ms) / 2) / (to.ms - from.ms));
    lead(from, middle, depth - 1, line);
    line.push_back(driven(middle));
    lead(middle, to, depth - 1, line);
  }

  bool is_near(const Place& from, const Place& to) const {
    const double begin = amplitude_at(from);
    const double end = amplitude_at(to);
    for (int step = 1; step < kSteps; ++step) {
      const double share = static_cast<double>(step) / kSteps;
      const Place place = from.towards(to, share);
      if (std::fabs(level_at(begin + share * (end - begin), place.hz) - most_level(place)) > kNear) return false;
    }
    return true;
  }

  static constexpr int kDeepest = 6;
  static constexpr double kLeastMs = 20;  // from point to point
  static constexpr int kSteps = 8;        // in which a line is looked at
  static constexpr double kNear = 1;      // dB

  lrasynth_profile profile_;
  Tuning tuning_;
  Resonator resonator_;
  Event* event_ = nullptr;
  std::map<std::pair<int32_t, int32_t>, double> levels_;  // of taps, by level and strength
};

}  // namespace

std::vector<Unreached> drive(std::vector<Event>& events, const lrasynth_profile& profile, const Resonator& resonator) {
  Driver driver(profile, resonator);
  for (Event& event : events) driver.drive(event);
  return std::move(driver.unreached);
}

int64_t ask_as_felt(std::vector<Event>& events, const lrasynth_profile& profile, const Resonator& resonator) {
  Driver driver(profile, resonator);
  for (Event& event : events) driver.ask_as_felt(event);
  return driver.kept;
}

}  // namespace design
