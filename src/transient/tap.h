// The tap, resolved: what will be drawn, whichever way its motor makes taps. It needs no profile any more.
#pragma once

#include <cstdint>
#include <variant>

#include "profile/profile.h"
#include "tone/window.h"
#include "transient/replay.h"
#include "transient/transient.h"

namespace lrasynth {

class Tap {
 public:
  explicit Tap(const Transient& transient) : way_(transient) {}
  explicit Tap(const Replay& replay) : way_(replay) {}

  // In samples; 0 where there is nothing to draw.
  int32_t length() const;

  // The window lies within 0..length().
  void draw(const Window<uint8_t>& window) const;

 private:
  std::variant<Replay, Transient> way_;
};

// A level's tap as the motor makes taps; nothing on a motor without any.
Tap tap_of(const Profile& profile, int32_t level, int32_t intensity);

// The same as it plays inside a pattern, at its level's share of the intensity.
Tap tap_in_pattern(const Profile& profile, int32_t level, int32_t intensity);

// A tap in the way of another motor, at the drive frequency of the profile's motor.
Tap routed_tap(const Motor& way, const Profile& profile, int32_t level, int32_t intensity);

}  // namespace lrasynth
