// Where the passes of a pattern lie in the buffer (sample output).
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "pattern/request.h"

namespace lrasynth {

// Samples from the pattern's start to the end of its last record, of which a transient counts in whole milliseconds.
// 0 without a record and where the 32-bit result is negative.
int32_t pass_length(const Request& request);

struct Layout {
  int64_t pass;    // samples of one pass
  int64_t room;    // samples that the first pass may cover: the pass or the furthest continuous vibration
  int64_t copies;  // of the pass, after it
  int64_t stride;  // from one copy to the next

  int64_t end_of_copies() const { return pass + copies * stride; }

  // Of everything that may be written.
  int64_t end() const { return std::max(room, end_of_copies()); }

  // Whether all of it lies between the buffer's start and 2^31 - 1.
  bool is_servable() const { return stride >= 0 && end() <= std::numeric_limits<int32_t>::max(); }
};

Layout layout_of(const Request& request, int32_t loop_count, int32_t interval_ms);

}  // namespace lrasynth
