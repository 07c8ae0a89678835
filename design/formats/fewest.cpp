// SPDX-License-Identifier: Apache-2.0
// The shortest path through passages, of which each may have a point in a few ways.
#include "design/formats/fewest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace design {
namespace {

// A point may lie beside its passage's amplitude by such factors, which spares the points next to it.
constexpr float kBeside[] = {1, 0.87F, 1.15F};
constexpr size_t kWays = std::size(kBeside);

// How many passages a line crosses at most, so that the time that it takes is bounded.
constexpr size_t kFarthest = 400;

// What it costs, in points, to fall short of a passage that is louder than the motor plays there.
constexpr float kShort = 0.3F;

// The slopes of lines that keep within bounds.
class Cone {
 public:
  void narrow(float dx, float low, float high) {
    low_ = std::max(low_, low / dx);
    high_ = std::min(high_, high / dx);
  }
  bool has(float dx, float dy) const { return dy >= low_ * dx && dy <= high_ * dx; }
  bool is_empty() const { return low_ > high_; }

 private:
  float low_ = -1e9F;
  float high_ = 1e9F;
};

// Where a point of a passage lies in frequency.
struct Spot {
  int32_t offset;
  float hz;
  float full;
  float near;          // how far lines may pass from the passage's frequency
  float least;         // what of the least amplitude can be asked for
  uint32_t loud_upto;  // passages up to this one that are too loud for points of their own
};

// A point that a passage may have.
struct Way {
  int32_t intensity = 0;
  float amplitude = 0;  // of that intensity
  float off = 0;        // how far it is from the passage's, in parts of a point
  float cost = 1e9F;    // points up to it
  uint32_t from = 0;    // the point before it
};

class Path {
 public:
  Path(std::span<const Passage> passages, const Tuning& tuning) : passages_(passages), ways_(passages.size()) {
    uint32_t loud = 0;
    for (size_t i = 0; i < passages.size(); ++i) {
      const Passage& passage = passages[i];
      const int32_t offset = tuning.nearest(static_cast<double>(passage.hz));
      const auto hz = static_cast<float>(tuning.hertz(offset));
      const auto full = static_cast<float>(tuning.full(offset) / 128);
      if (passage.least > full) ++loud;
      spots_.push_back({offset, hz, full, std::max(passage.near_hz, std::fabs(hz - passage.hz) + 1),
                        std::min(passage.least, full), loud});
      for (size_t k = 0; k < kWays; ++k) {
        Way& way = ways_[i][k];
        const float asked = kBeside[k] * passage.amplitude;
        way.intensity = static_cast<int32_t>(std::lround(std::clamp(100 * asked / full, 0.0F, 100.0F)));
        way.amplitude = static_cast<float>(way.intensity) * full / 100;
        way.off = 0.2F * std::fabs(1 - kBeside[k]);
      }
    }
  }

  FittedCurve find() {
    for (Way& way : ways_.front()) way.cost = way.off;
    for (size_t i = 0; i + 1 < passages_.size(); ++i) {
      for (size_t k = 0; k < kWays; ++k) reach_on(i, k);
    }
    const auto& ends = ways_.back();
    const auto cheaper = [](const Way& a, const Way& b) { return a.cost < b.cost; };
    size_t at = (passages_.size() - 1) * kWays +
                static_cast<size_t>(std::min_element(ends.begin(), ends.end(), cheaper) - ends.begin());
    FittedCurve fitted = {{point(at)}};
    while (at >= kWays) {
      const size_t from = way(at).from;
      compare(from, at, fitted);
      fitted.curve.push_back(point(at = from));
    }
    std::reverse(fitted.curve.begin(), fitted.curve.end());
    return fitted;
  }

 private:
  Way& way(size_t at) { return ways_[at / kWays][at % kWays]; }

  DrawnPoint point(size_t at) {
    const size_t passage = at / kWays;
    return {1.0 * passages_[passage].ms, 1.0 * way(at).intensity, 1.0 * spots_[passage].offset};
  }

  // Lines from a point to all that they reach.
  void reach_on(size_t from, size_t k) {
    const Way& start = ways_[from][k];
    const Passage& origin = passages_[from];
    Cone wanted;
    Cone amplitudes;
    Cone places;
    const size_t farthest = std::min(from + kFarthest, passages_.size() - 1);
    for (size_t to = from + 1; to <= farthest && !amplitudes.is_empty() && !places.is_empty(); ++to) {
      const bool is_next = to == from + 1;
      const Passage& passage = passages_[to];
      const Spot& spot = spots_[to];
      const auto ms = static_cast<float>(passage.ms - origin.ms);
      const auto loud = static_cast<float>(spot.loud_upto - spots_[from].loud_upto);
      if (is_next || places.has(ms, spot.hz - spots_[from].hz)) {
        for (Way& way : ways_[to]) {
          const float rise = way.amplitude - start.amplitude;
          if (!is_next && !amplitudes.has(ms, rise)) continue;
          const float cost = start.cost + 1 + way.off + (wanted.has(ms, rise) ? 0 : kShort * loud);
          if (cost >= way.cost) continue;
          way.cost = cost;
          way.from = static_cast<uint32_t>(from * kWays + k);
        }
      }
      wanted.narrow(ms, passage.least - start.amplitude, passage.most - start.amplitude);
      amplitudes.narrow(ms, spot.least - start.amplitude, passage.most - start.amplitude);
      const float shift = passage.hz - spots_[from].hz;
      places.narrow(ms, shift - spot.near, shift + spot.near);
    }
  }

  // What a line that was found plays of the passages up to its end.
  void compare(size_t from, size_t to, FittedCurve& fitted) {
    const size_t first = from / kWays;
    const size_t last = to / kWays;
    const auto span = static_cast<float>(passages_[last].ms - passages_[first].ms);
    for (size_t i = first + 1; i <= last; ++i) {
      const float share = static_cast<float>(passages_[i].ms - passages_[first].ms) / span;
      const float played = way(from).amplitude + share * (way(to).amplitude - way(from).amplitude);
      if (passages_[i].least <= spots_[i].full || played >= passages_[i].least) continue;
      ++fitted.short_of;
      fitted.shortest = std::min(fitted.shortest, played / passages_[i].amplitude);
    }
  }

  std::span<const Passage> passages_;
  std::vector<Spot> spots_;
  std::vector<std::array<Way, kWays>> ways_;
};

}  // namespace

FittedCurve fewest_points(std::span<const Passage> passages, const Tuning& tuning) {
  return Path(passages, tuning).find();
}

}  // namespace design
