// SPDX-License-Identifier: Apache-2.0
// How a curve is cut into segments of records.
//
// A segment of a record has a carrier whose phase is frequency times time, so that its momentary frequency moves twice
// as fast as its points do, and an envelope along a sine: a quarter of it at 24000 samples a second, half of it at
// 12000. Two ways lead to straight lines. The far point may lie beyond what is played of the segment: of one that is
// twice as long the carrier has, when it is cut, the very frequency of the far point, and the envelope has run through
// half as much of its sine, which is nearly straight. Or the far point may say the frequency halfway along the line,
// which the carrier then leaves behind twice as fast: such a segment is closed, it ends where its points do, and
// another one can follow in the same record. In both, the amplitude of the far point is what the envelope needs in
// order to meet the line.
//
// Each segment starts with the phase 0. Its end is chosen among the milliseconds near a drawn point, and its
// frequencies among those that are near enough to the line, so that the carrier ends close to a rising zero.
#include "design/pattern/compile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

#include "design/base/motor.h"

namespace design {
namespace {

constexpr double kNearHz = 3.2;  // to the line, or that share of it
constexpr double kNearShare = 0.024;
constexpr double kNearAmplitude = 3.2;         // sample units
constexpr double kStrongest = kFullScale - 1;  // leaves room for whole percents
constexpr double kWeak = 6;                    // an amplitude at which an envelope is not shifted
constexpr double kSilent = 1;                  // an amplitude of which neither frequency nor phase is felt
constexpr size_t kMostPassed = 64;             // drawn points, by one segment

// How near to a rising zero a segment ends, by its sine there: at a drawn point, and where swings are looked at.
constexpr double kSmooth = 0.25;
constexpr double kSmoothInside = 0.1;
constexpr double kRough = 0.4;  // more is taken if there is no other way

// What is taken if it must be: so many times further from the lines.
constexpr double kAnySlack = 1e6;
constexpr double kSlacks[] = {1, 1.5, 2.5, 5, kAnySlack};
constexpr double kFarForSmoothness = 2.5;

// How much longer a segment may be than what is played of it.
constexpr double kOpen[] = {1, 1.5, 2, 3, 4, 6, 8};
constexpr std::span<const double> kClosed(kOpen, 1);

// Up to pi. By its series and not the library's, which may round otherwise elsewhere: what is chosen by it is to be the
// same on every build.
double sine(double x) {
  constexpr double kPi = std::numbers::pi;
  const double y = x > kPi / 2 ? kPi - x : x;
  const double y2 = y * y;
  return y * (1 - y2 / 6 * (1 - y2 / 20 * (1 - y2 / 42 * (1 - y2 / 72 * (1 - y2 / 110)))));
}

struct Drawn {
  double ms;
  double hz;
  double amplitude;
};

// What plays from one seam to the next.
struct Segment {
  int32_t from_ms = 0;
  int32_t to_ms = 0;  // 0: there is none
  int32_t far_ms = 0;
  lrasynth_point from = {};
  lrasynth_point far = {};
  double jump = 1e9;  // of the amplitude, at its end
  double flaw = 1e9;  // that, or what is cut of what is drawn there
  double cost = 1e9;
};

// Where a segment may end, and from the line of which stretch to that of which other it leads.
struct Goal {
  size_t first;
  size_t last;
  int32_t least_ms;
  int32_t most_ms;
  double smooth;
};

struct Offsets {
  int32_t least;
  int32_t most;
};

class Cutter {
 public:
  Cutter(const lrasynth_profile& profile, const Tuning& tuning, int32_t start_ms,
         std::span<const lrasynth_point> points, bool fine)
      : tuning_(tuning),
        is_fine_(fine),
        quarters_(24000.0 / profile.sample_rate),
        start_ms_(start_ms),
        end_ms_(points.back().ms - points.front().ms) {
    for (const lrasynth_point& point : points) {
      drawn_.push_back({static_cast<double>(point.ms - points.front().ms), tuning_.hertz(point.offset),
                        tuning_.full(point.offset) * point.intensity / 100});
    }
  }

  // A record has two segments where that leads further than one.
  std::vector<CurvePart> run() {
    std::vector<CurvePart> parts;
    for (record_ms_ = 0; record_ms_ < end_ms_; record_ms_ += parts.back().vibration.duration_ms) {
      const Segment alone = next(record_ms_, kOpen);
      const Segment first = alone.to_ms == end_ms_ ? Segment() : next(record_ms_, kClosed);
      const bool goes_on = first.to_ms > 0 && first.to_ms < end_ms_;
      const Segment second = goes_on ? next(first.to_ms, kOpen) : Segment();
      const bool leads_further = second.to_ms > alone.to_ms + kSeamMs;
      parts.push_back(leads_further ? part_of(first, second) : part_of(alone, alone));
    }
    return parts;
  }

 private:
  // Its second segment has no length. The third is the first where there is one alone.
  CurvePart part_of(const Segment& first, const Segment& last) const {
    const auto at = [this](int32_t ms, lrasynth_point point) {
      return lrasynth_point{ms - record_ms_, point.intensity, point.offset};
    };
    const bool is_one = first.from_ms == last.from_ms;
    const int32_t middle_ms = first.from_ms + (is_one ? 0 : first.far_ms);
    const Vibration vibration = {.duration_ms = last.to_ms - record_ms_,
                                 .points = {at(record_ms_, first.from), at(middle_ms, is_one ? first.from : first.far),
                                            at(middle_ms, last.from), at(last.from_ms + last.far_ms, last.far)},
                                 .is_record = true};
    return {record_ms_, vibration};
  }

  // The one that reaches furthest from there on, cut after one of these shares of its span. A smooth end is worth to be
  // somewhat further from the lines.
  Segment next(int32_t from_ms, std::span<const double> spans) const {
    Segment best;
    for (const double slack : kSlacks) {
      if (slack > 1 && spans.size() == 1) return {};  // one that is to be followed has to be near
      if (slack > kFarForSmoothness && best.to_ms > 0) break;
      for (const Goal& goal : goals(from_ms, spans, slack)) {
        const Segment found = best_to(goal, from_ms, spans, slack);
        if (found.flaw < best.flaw) best = found;
        if (best.flaw <= 1) return best;
      }
      if (best.jump <= kRough) break;
    }
    return best;
  }

  // In the order in which they are tried: the furthest drawn point first.
  std::vector<Goal> goals(int32_t from_ms, std::span<const double> spans, double slack) const {
    const size_t stretch = stretch_from(from_ms);
    const double period_ms = 1000 / drawn_[stretch].hz;
    std::vector<Goal> goals;
    const size_t most = std::min(drawn_.size() - 1, stretch + kMostPassed);
    for (size_t to = stretch + 1; to <= most; ++to) {
      const bool is_long = drawn_[to].ms + kSeamMs - from_ms >= period_ms;
      const auto at = static_cast<int32_t>(drawn_[to].ms);
      const Goal goal = at == end_ms_
                            ? Goal{stretch, to - 1, end_ms_, end_ms_, 1}
                            : Goal{stretch, to - 1, at - kSeamMs, std::min(at + kSeamMs, end_ms_ - 1), kSmooth};
      if (goal.most_ms <= from_ms) continue;
      const bool is_near = fits(goal, from_ms, drawn_[to].ms, spans, slack);
      if (is_near) goals.insert(goals.begin(), goal);
      if (is_long && (!is_near || slack > 1)) break;
    }
    constexpr double kPart = 0.7;
    const double length_ms = drawn_[stretch + 1].ms - from_ms;
    for (double part_ms = length_ms * kPart; part_ms > 2 * period_ms; part_ms *= kPart) {
      const auto at = static_cast<int32_t>(from_ms + part_ms);
      goals.push_back({stretch, stretch, at - 2 * kSeamMs, at, kSmoothInside});
    }
    // Where nothing else is left, any end: a few milliseconds may read as types, and the last one starts nothing.
    if (slack == kAnySlack) goals.push_back({stretch, stretch, from_ms + 1, std::min(from_ms + 20, end_ms_), kSmooth});
    return goals;
  }

  // A seam near a drawn point begins the stretch behind it.
  size_t stretch_from(int32_t from_ms) const {
    const int32_t at_ms = from_ms == 0 ? 0 : std::min(from_ms + kSeamMs, end_ms_ - 1);
    const auto behind = std::upper_bound(drawn_.begin(), drawn_.end(), at_ms,
                                         [](double ms, const Drawn& point) { return ms < point.ms; });
    return static_cast<size_t>(behind - drawn_.begin()) - 1;
  }

  // On the line of a stretch, or where it leads a little beyond it.
  Drawn on_line(size_t stretch, double ms) const {
    constexpr double kBeyond = 0.25;
    const Drawn& a = drawn_[stretch];
    const Drawn& b = drawn_[stretch + 1];
    const double share = b.ms > a.ms ? std::clamp((ms - a.ms) / (b.ms - a.ms), -kBeyond, 1 + kBeyond) : 0;
    const double amplitude = a.amplitude + (b.amplitude - a.amplitude) * share;
    return {ms, a.hz + (b.hz - a.hz) * share, std::clamp(amplitude, 0.0, kStrongest)};
  }

  // How far the amplitudes of a stretch and of the one behind it are apart where the one gives way to the other: what
  // is near its end, a short fade, say, is not cut.
  double kink_at(size_t stretch, double ms) const {
    if (stretch + 2 >= drawn_.size()) return 0;
    const double apart = on_line(stretch, ms).amplitude - on_line(stretch + 1, ms).amplitude;
    return apart / (2 * kNearAmplitude);
  }

  bool fits(const Goal& goal, int32_t from_ms, double to_ms, std::span<const double> spans, double slack) const {
    const int32_t from = tuning_.nearest(on_line(goal.first, from_ms).hz);
    return std::any_of(spans.begin(), spans.end(), [&](double span) {
      const Trial trial(*this, goal, from_ms, to_ms, span);
      return trial.deviation(from, tuning_.nearest(trial.far_hz(from))) <= slack;
    });
  }

  // Among all ends and frequencies.
  Segment best_to(const Goal& goal, int32_t from_ms, std::span<const double> spans, double slack) const {
    Segment best;
    const double hz = on_line(goal.first, from_ms).hz;
    const Offsets starts = offsets_around(hz, slack);
    const auto period_ms = static_cast<int32_t>(std::ceil(900 / tuning_.hertz(tuning_.nearest(hz))));
    const int32_t shortest_ms = slack < kAnySlack ? period_ms : 1;
    const int32_t least_ms = std::min(std::max(goal.least_ms, from_ms + shortest_ms), goal.most_ms);
    for (const double span : spans) {
      if (!fits(goal, from_ms, goal.most_ms, {&span, 1}, 2 * slack)) continue;
      for (int32_t to_ms = least_ms; to_ms <= goal.most_ms; ++to_ms) {
        const Trial trial(*this, goal, from_ms, to_ms, span);
        if (is_forbidden(from_ms, to_ms, trial.far_ms)) continue;
        for (int32_t from = starts.least; from <= starts.most; ++from) {
          const Offsets ends = offsets_around(trial.far_hz(from), slack, span / 2);
          for (int32_t far = ends.least; far <= ends.most; ++far) trial.improve(best, from, far, slack);
        }
      }
    }
    return best;
  }

  // No integer of a record may.
  bool is_forbidden(int32_t from_ms, int32_t to_ms, int32_t far_ms) const {
    const bool starts = to_ms < end_ms_ && reads_as_type(start_ms_ + to_ms);
    return starts || reads_as_type(to_ms - record_ms_) || reads_as_type(from_ms - record_ms_ + far_ms);
  }

  // The nearest, and those within a share of what is near enough.
  Offsets offsets_around(double hz, double slack, double share = 1) const {
    const int32_t beside = slack > 1 ? 4 : 2;
    const int32_t nearest = tuning_.nearest(hz);
    const int32_t least = std::max(-50, nearest - beside);
    const int32_t most = std::min(50, nearest + beside);
    const double near = slack * share * near_hz(hz);
    Offsets offsets = {nearest, nearest};
    while (offsets.least > least && hz - tuning_.hertz(offsets.least - 1) <= near) --offsets.least;
    while (offsets.most < most && tuning_.hertz(offsets.most + 1) - hz <= near) ++offsets.most;
    return offsets;
  }

  static double near_hz(double hz) { return std::max(kNearHz, kNearShare * std::fabs(hz)); }

  // Of fine ones about a decibel.
  double near_amplitude(double amplitude) const {
    return std::min(kNearAmplitude, is_fine_ ? 0.5 + amplitude / 10 : 1 + amplitude / 4);
  }

  // A segment between two times, of a span, for frequencies to be chosen.
  struct Trial {
    Trial(const Cutter& of, const Goal& to, int32_t from, double until, double span)
        : cutter(of),
          goal(to),
          from_ms(from),
          to_ms(until),
          far_ms(static_cast<int32_t>(std::lround((until - from) * span))),
          played((until - from) / far_ms),
          turn(of.quarters_ * played * std::numbers::pi / 2),
          reached(sine(turn)),
          halfway(sine(turn / 2)),
          begin(of.on_line(to.first, from)),
          end(of.on_line(to.last, until)),
          kink(of.kink_at(to.last, until)) {}

    // The frequency of the far point with which the carrier meets the line.
    double far_hz(int32_t from) const {
      const double from_hz = cutter.tuning_.hertz(from);
      return from_hz + (end.hz - from_hz) / played / 2;
    }

    double sweep_hz(int32_t from, int32_t far) const {
      return 2 * (cutter.tuning_.hertz(far) - cutter.tuning_.hertz(from)) * played;
    }

    // The envelope's ends meet the line; where it bends far, half of the bend is moved to the other side.
    Segment segment(int32_t from, int32_t far) const {
      const double rise = (end.amplitude - begin.amplitude) / reached;
      const double bend = rise * (halfway - reached / 2);
      const bool moves = std::fabs(bend) > kNearAmplitude / 2 && std::min(begin.amplitude, end.amplitude) > kWeak;
      const double low = begin.amplitude - (moves ? bend / 2 : 0);
      const auto percent = [&](double amplitude, int32_t offset) {
        const double reachable = std::clamp(amplitude, -kStrongest, kStrongest);
        return static_cast<int32_t>(std::lround(100 * reachable / cutter.tuning_.full(offset)));
      };
      const bool is_level = reached < 0.1;  // at the end of half a turn no rise is left
      return {.from_ms = from_ms,
              .to_ms = static_cast<int32_t>(to_ms),
              .far_ms = far_ms,
              .from = {0, percent(is_level ? (begin.amplitude + end.amplitude) / 2 : low, from), from},
              .far = {0, percent(is_level ? (begin.amplitude + end.amplitude) / 2 : low + rise, far), far}};
    }

    double amplitude_of(const lrasynth_point& point) const {
      return cutter.tuning_.full(point.offset) * point.intensity / 100;
    }

    // From the lines, 1 is as far as it may be.
    double deviation(int32_t from, int32_t far) const {
      const Segment tried = segment(from, far);
      const double begins = amplitude_of(tried.from);
      const double rises = amplitude_of(tried.far) - begins;
      const double from_hz = cutter.tuning_.hertz(from);
      const double sweeps = sweep_hz(from, far);
      double worst = 0;
      const auto look = [&](size_t stretch, double ms) {
        const Drawn line = cutter.on_line(stretch, ms);
        const double share = (ms - from_ms) / (to_ms - from_ms);
        const double off_hz = from_hz + sweeps * share - line.hz;
        const double off_amplitude = begins + rises * sine(turn * share) - line.amplitude;
        worst = std::max(worst, std::fabs(off_amplitude) / cutter.near_amplitude(line.amplitude));
        if (line.amplitude >= kSilent) worst = std::max(worst, std::fabs(off_hz) / near_hz(line.hz));
      };
      for (size_t stretch = goal.first; stretch <= goal.last; ++stretch) {
        const double lo = std::max<double>(from_ms, cutter.drawn_[stretch].ms);
        const double hi = std::min(to_ms, cutter.drawn_[stretch + 1].ms);
        if (lo >= hi) continue;
        for (const double third : {0.0, 1.0, 2.0, 3.0}) look(stretch, lo + (hi - lo) * third / 3);
      }
      return worst;
    }

    void improve(Segment& best, int32_t from, int32_t far, double slack) const {
      const double cycles = (cutter.tuning_.hertz(from) + sweep_hz(from, far) / 2) * (to_ms - from_ms) / 1000;
      const double off = std::fabs(cycles - std::floor(cycles + 0.5));
      const bool is_silent = end.amplitude < kSilent;
      const double jump = is_silent ? 0 : off < 0.25 ? sine(2 * std::numbers::pi * off) : 1 + off;
      const double rough = jump / goal.smooth;
      const double unsmooth = rough * rough + kink * kink;
      if (unsmooth >= best.cost) return;
      const double deviates = deviation(from, far);
      const double cost = unsmooth + deviates * deviates;
      if (deviates > slack || cost >= best.cost) return;
      best = segment(from, far);
      best.jump = jump;
      best.flaw = std::max(rough / 1.5, std::fabs(kink) / 2);
      best.cost = cost;
    }

    const Cutter& cutter;
    const Goal& goal;
    int32_t from_ms;
    double to_ms;
    int32_t far_ms;
    double played;   // of the span
    double turn;     // of the envelope's sine, in what is played
    double reached;  // by that sine, at the end and halfway
    double halfway;
    Drawn begin;
    Drawn end;
    double kink;
  };

  const Tuning& tuning_;
  bool is_fine_;
  double quarters_;
  int32_t start_ms_;
  int32_t end_ms_;
  std::vector<Drawn> drawn_;
  int32_t record_ms_ = 0;
};

}  // namespace

std::vector<CurvePart> CurveCompiler::parts(int32_t start_ms, const std::vector<lrasynth_point>& points, bool fine) {
  constexpr int32_t kAnyStart = -2 * kLongestMs;
  std::vector<std::array<int32_t, 3>> key;
  for (const lrasynth_point& point : points) {
    key.push_back({point.ms - points.front().ms, point.intensity, point.offset});
  }
  auto known = known_.find({fine, key});
  if (known == known_.end()) {
    known =
        known_.emplace(std::pair(fine, std::move(key)), Cutter(profile_, tuning_, kAnyStart, points, fine).run()).first;
  }
  const auto is_forbidden = [&](const CurvePart& part) { return reads_as_type(start_ms + part.since_ms); };
  const std::vector<CurvePart>& parts = known->second;
  if (std::none_of(parts.begin(), parts.end(), is_forbidden)) return parts;
  return Cutter(profile_, tuning_, start_ms, points, fine).run();
}

}  // namespace design
