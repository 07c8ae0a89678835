// SPDX-License-Identifier: Apache-2.0
// The loops of estimated rendering that hang on no source.
#include "tone/speculation.h"

#include <bit>

namespace lrasynth {

// Half below a value, the nearest whole number is its integer part, and a distance near a half puts it in doubt. The
// comparison is written so that a NaN is in doubt too.
bool code_estimates(const float* estimates, int32_t n, float last_low, float margin, int32_t* codes) {
  const float most = 0.5F - margin;
  int32_t doubts = 0;
  for (int32_t j = 0; j < n; ++j) {
    const float lowered = estimates[j] - 0.5F;
    const float shifted = lowered + kRoundingShift;
    const int32_t whole = std::bit_cast<int32_t>(shifted) - std::bit_cast<int32_t>(kRoundingShift);
    const float distance = std::fabs(lowered - (shifted - kRoundingShift));
    const int32_t doubt = distance <= most ? 0 : kDoubtful;
    codes[j] = (whole + 127 - (estimates[j] > last_low ? 254 : 0)) | doubt;
    doubts |= doubt;
  }
  return doubts != 0;
}

int32_t next_doubt(const int32_t* codes, int32_t j, int32_t n) {
  return static_cast<int32_t>(std::find_if(codes + j, codes + n, [](int32_t code) { return code < 0; }) - codes);
}

void put_codes(const int32_t* codes, int32_t n, int32_t* out) { std::copy_n(codes, n, out); }

void put_codes(const int32_t* codes, int32_t n, uint8_t* out) {
  for (int32_t j = 0; j < n; ++j) out[j] = low_byte(codes[j]);
}

}  // namespace lrasynth
