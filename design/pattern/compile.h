// SPDX-License-Identifier: Apache-2.0
// A curve as drawn becomes records, whose four points play otherwise than they are drawn.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "design/base/motor.h"
#include "design/pattern/event.h"
#include "lrasynth.h"

namespace design {

constexpr int32_t kSeamMs = 10;  // around a drawn point, where a segment may end

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
  // since no integer of a record may read as the type of an event. Fine: amplitudes stay as near as a finger can tell.
  std::vector<CurvePart> parts(int32_t start_ms, const std::vector<lrasynth_point>& points, bool fine = false);

 private:
  lrasynth_profile profile_;
  Tuning tuning_;
  // Those of any start, since patterns repeat their curves.
  std::map<std::pair<bool, std::vector<std::array<int32_t, 3>>>, std::vector<CurvePart>> known_;
};

}  // namespace design
