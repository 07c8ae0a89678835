// SPDX-License-Identifier: Apache-2.0
// The three exported conversions of sample codes.
#include "profile/sample_code.h"

#include "lrasynth.h"

#ifndef LRASYNTH_NO_BARE_NAMES

using namespace lrasynth;

float wave_transform(float offsetValue) { return code_offset(offsetValue); }

float custom_wave_transform(int32_t offsetValue) { return static_cast<float>(code_truncated_offset(offsetValue)); }

float wave_reverse(float offsetValue) { return mirror(offsetValue); }

#endif  // LRASYNTH_NO_BARE_NAMES
