// SPDX-License-Identifier: Apache-2.0
// Listing the events of a request for a chip that plays them by itself.
#include "pattern/event_stream.h"

#include <algorithm>
#include <initializer_list>

#include "profile/arithmetic.h"
#include "profile/sample_code.h"

namespace lrasynth {
namespace {

constexpr int32_t kHeaderLength = 2;
constexpr int32_t kGroupLength = 6;

void put(std::initializer_list<uint8_t> bytes, const Window<uint8_t>& part) {
  std::copy(bytes.begin() + part.first, bytes.begin() + part.end, part.out);
}

// Visits the delta, strength and duration of each event.
template <class Visit>
void each_group(const Request& request, const Types& types, Visit visit) {
  bool first = true;
  types.each([&](int64_t i) {
    const bool continuous = request.at(i) == LRASYNTH_CONTINUOUS;
    // The predecessor is whatever stands one record before, even where no record does.
    const int32_t since_ms = first ? 0 : request.at(i + 1 - LRASYNTH_RECORD_LENGTH);
    const int32_t delta_ms = wrap(int64_t{request.at(i + 1)} - since_ms);
    visit(delta_ms, request.at(continuous ? i + 9 : i + 2), continuous ? request.at(i + 4) : EventStream::kTransientMs);
    first = false;
  });
}

}  // namespace

EventStream::EventStream(const Request& request, int32_t loop_count)
    : request_(request), types_(request, request.length()) {
  each_group(request_, types_, [this](int32_t delta_ms, int32_t /*strength*/, int32_t duration_ms) {
    groups_.pass += kGroupLength;
    total_ms_ = wrap(int64_t{total_ms_} + delta_ms + duration_ms);
  });
  groups_.copies = std::max(1, loop_count) - int64_t{1};
  groups_.stride = groups_.pass;
  total_ms_ = wrap(int64_t{total_ms_} * loop_count);
}

int64_t EventStream::length() const { return kHeaderLength + groups_.end(); }

void EventStream::draw(const Window<uint8_t>& window) const {
  put({low_byte(total_ms_), low_byte(total_ms_ >> 8)}, window.of_piece(0, kHeaderLength));
  draw_repeated(groups_, window.of_piece(kHeaderLength, groups_.end()), [this](const Window<uint8_t>& groups) {
    int64_t at = 0;
    each_group(request_, types_, [&](int32_t delta_ms, int32_t strength, int32_t duration_ms) {
      put({0, low_byte(delta_ms), low_byte(delta_ms >> 8), low_byte(strength), low_byte(duration_ms),
           low_byte(duration_ms >> 8)},
          groups.of_piece(at, kGroupLength));
      at += kGroupLength;
    });
  });
}

}  // namespace lrasynth
