// SPDX-License-Identifier: Apache-2.0
// Finding the records of a request.
#include "pattern/request.h"

namespace lrasynth {

// Two halves side by side: compilers make half as many steps of it.
int32_t count_types(const int32_t* values, int32_t count) {
  const int32_t half = count / 2;
  const int32_t* const second = values + half;
  int32_t types = 0;
  for (int32_t i = 0; i < half; ++i) types += (is_event(values[i]) ? 1 : 0) + (is_event(second[i]) ? 1 : 0);
  return types + (count % 2 != 0 && is_event(values[count - 1]) ? 1 : 0);
}

}  // namespace lrasynth
