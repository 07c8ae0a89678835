// SPDX-License-Identifier: Apache-2.0
// Replay of stored bursts: how their samples are scaled.
#pragma once

#include <cstdint>

#include "profile/arithmetic.h"
#include "profile/sample_code.h"
#include "tone/window.h"
#include "transient/bursts.h"

namespace lrasynth {

// How one byte of a stored burst is scaled by an intensity in percent.
class Scaling {
 public:
  explicit Scaling(int32_t intensity)
      : scale_(static_cast<float>(intensity) / 100.0F), threshold_(truncate(scale_ * 128.0F)) {}

  // The definition. Scale, scaled value and narrowing are single precision, the two sums double: in double precision
  // throughout, some bytes would differ by one. Not inlined, or Clang makes kilobytes of it.
  [[gnu::noinline]] uint8_t exact(uint8_t stored) const {
    if (stored == 0) return 0;
    const float scaled = scale_ * offset_value(stored);
    const auto wide = static_cast<double>(scaled);
    const double sum = narrow(scaled) > threshold_ ? wide - static_cast<double>(scale_) * 128.0
                                                   : static_cast<double>(1.0F - scale_) * 128.0 + (wide + 128.0);
    return low_byte(narrow(static_cast<float>(sum)));
  }

  // The same for intensities 0..100, where single precision and bare truncation give the same bytes. Selects by masks,
  // because compilers vectorise those.
  uint8_t nominal(uint8_t stored) const {
    const float scaled = scale_ * offset_value(stored);
    const auto above = static_cast<int32_t>(scaled - scale_ * 128.0F);
    const auto below = static_cast<int32_t>((1.0F - scale_) * 128.0F + (scaled + 128.0F));
    const int32_t is_above = -static_cast<int32_t>(static_cast<int32_t>(scaled) > threshold_);
    return low_byte((above & is_above) | (below & ~is_above));
  }

 private:
  static float offset_value(uint8_t stored) { return static_cast<float>(static_cast<int8_t>(stored) + 128); }

  float scale_;
  int32_t threshold_;
};

// A stored burst at an intensity in percent.
struct Replay {
  int32_t length() const { return static_cast<int32_t>(burst.size()); }
  void draw(const Window<uint8_t>& window) const;

  Burst burst;
  int32_t intensity = 0;
};

}  // namespace lrasynth
