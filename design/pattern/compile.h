// SPDX-License-Identifier: Apache-2.0
// A curve as drawn becomes records, whose four points play otherwise than they are drawn.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <vector>

#include "design/pattern/event.h"
#include "lrasynth.h"

namespace design {

// Hertz and full amplitude at all frequency offsets of a motor.
class Tuning {
 public:
  explicit Tuning(const lrasynth_profile& profile);

  double hertz(int32_t offset) const { return hertz_[index(offset)]; }
  double full(int32_t offset) const { return full_[index(offset)]; }
  // The offset of the nearest frequency.
  int32_t nearest(double hz) const;

 private:
  static size_t index(int32_t offset) { return static_cast<size_t>(offset + 50); }

  std::array<double, 101> hertz_;
  std::array<double, 101> full_;
};

// Makes curves of a chip and motor.
class CurveCompiler {
 public:
  explicit CurveCompiler(const lrasynth_profile& profile) : profile_(profile), tuning_(profile) {}

  const lrasynth_profile& profile() const { return profile_; }
  const Tuning& tuning() const { return tuning_; }

  // The vibrations that play these points as drawn: from point to point the momentary frequency in a straight line from
  // hertz to hertz, and the amplitude from amplitude to amplitude, that is intensity times the motor's gain. The same
  // on every build.
  //
  // Times do not decrease, and the last point lies behind the first, at which the curve starts. The start is needed
  // since no integer of a record may read as the type of an event.
  std::vector<CurvePart> parts(int32_t start_ms, const std::vector<lrasynth_point>& points);

 private:
  lrasynth_profile profile_;
  Tuning tuning_;
  // Those of any start, since patterns repeat their curves.
  std::map<std::vector<std::array<int32_t, 3>>, std::vector<CurvePart>> known_;
};

}  // namespace design
