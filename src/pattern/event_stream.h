// SPDX-License-Identifier: Apache-2.0
// The compact event stream of chip type 11: a description of the events that the chip plays by itself.
#pragma once

#include <cstdint>

#include "pattern/repetition.h"
#include "pattern/request.h"
#include "tone/window.h"

namespace lrasynth {

class EventStream {
 public:
  static constexpr int32_t kTransientMs = 5;  // what a transient counts as

  EventStream(const Request& request, int32_t loop_count);

  int64_t length() const;

  void draw(const Window<uint8_t>& window) const;

 private:
  Request request_;
  Types types_;
  Repetition groups_;     // counted from behind the header
  int32_t total_ms_ = 0;  // as the header has it
};

}  // namespace lrasynth
